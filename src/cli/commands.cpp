#include "cli/commands.h"

#include "cli/report.h"
#include "cli/zip_command.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <ostream>
#include <vector>

namespace quill::cli {
namespace {

constexpr const char* about = "Recovers the attachments of saved mails and news posts: MIME, UUE, XXE, BinHex, yEnc.";

constexpr const char* footer =
    "Exit status: 0 everything found is whole or verified; 1 something is damaged or\n"
    "incomplete; 2 nothing was found; 3 bad usage, or a file can't be read or written.\n"
    "`quill COMMAND --help` lists a command's options; `man quill` has the rest.";

constexpr const char* see_help = "`quill --help` and `quill COMMAND --help` tell the usage.\n";

/// Whether the first argument stands where a command is to be named, and is none.
bool is_unknown_command(const CLI::App& app, std::span<const std::string> arguments) {
    if (arguments.empty() || arguments.front().starts_with('-')) return false;
    const std::vector<const CLI::App*> commands = app.get_subcommands({});
    return std::none_of(commands.begin(), commands.end(),
                        [&](const CLI::App* command) { return command->check_name(arguments.front()); });
}

/// The arguments as the parser wants them: the last one first. It would read "[a,b]" as a list of two, so a file of
/// that name is given by another path.
std::vector<std::string> for_parser(std::span<const std::string> arguments) {
    std::vector<std::string> out(arguments.rbegin(), arguments.rend());
    for (std::string& argument : out) {
        if (argument.starts_with('[') && argument.ends_with(']')) argument.insert(0, "./");
    }
    return out;
}

/// What the standard streams could not take: a full disk, a closed pipe.
ExitStatus flushed(ExitStatus status, const Console& console) {
    console.out.flush();
    if (console.out.good()) return status;
    console.err << "quill: standard output could not be written\n";
    return ExitStatus::failed;
}

}  // namespace

ExitStatus run(std::span<const std::string> arguments, const Console& console) {
    Work work;
    CLI::App app{about, "quill"};
    app.set_version_flag("--version", std::string("quill ") + QUILL_VERSION);
    app.require_subcommand(1);
    app.footer(footer);
    app.get_formatter()->label("TEXT", "");      // the usage line says what is a text,
    app.get_formatter()->label("REQUIRED", "");  // and what must be given
    app.failure_message(
        [](const CLI::App*, const CLI::Error& error) { return "quill: " + printable(error.what()) + "\n" + see_help; });
    add_decode_command(app, work);
    add_list_command(app, work);
    add_encode_command(app, work);
    add_merge_command(app, work);
    add_zip_command(app, work);
    if (is_unknown_command(app, arguments)) {
        console.err << "quill: There is no command " << printable(arguments.front()) << '\n' << see_help;
        return ExitStatus::failed;
    }
    try {
        app.parse(for_parser(arguments));
    } catch (const CLI::ParseError& error) {
        const bool is_complaint = app.exit(error, console.out, console.err) != 0;
        return flushed(is_complaint ? ExitStatus::failed : ExitStatus::good, console);
    }
    return flushed(work(console), console);
}

}  // namespace quill::cli
