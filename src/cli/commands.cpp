#include "cli/commands.h"
#include "cli/zip_command.h"

#include <CLI/CLI.hpp>

#include <ostream>
#include <vector>

namespace quill::cli {
namespace {

constexpr const char* about = "Recovers the attachments of saved mails and news posts: MIME, UUE, XXE, BinHex, yEnc.";

constexpr const char* footer =
    "Exit status: 0 everything found is whole or verified; 1 something is damaged or\n"
    "incomplete; 2 nothing was found; 3 bad usage, or a file can't be read or written.\n"
    "`quill COMMAND --help` tells a command's options; `man quill` tells the rest.";

/// A file may be called "[a]": that is no list here.
void take_brackets_as_they_are(CLI::App& app) {
    for (CLI::App* command : app.get_subcommands({})) {
        for (CLI::Option* option : command->get_options()) option->allow_extra_args(false);
        take_brackets_as_they_are(*command);
    }
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
    add_decode_command(app, work);
    add_list_command(app, work);
    add_merge_command(app, work);
    add_zip_command(app, work);
    take_brackets_as_they_are(app);
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));  // the parser takes them from behind
    } catch (const CLI::ParseError& error) {
        const bool is_complaint = app.exit(error, console.out, console.err) != 0;
        return flushed(is_complaint ? ExitStatus::failed : ExitStatus::good, console);
    }
    return flushed(work(console), console);
}

}  // namespace quill::cli
