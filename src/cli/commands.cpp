#include "cli/commands.h"

#include "cli/album_command.h"
#include "cli/book_command.h"
#include "cli/examples.h"
#include "cli/report.h"
#include "cli/usage.h"
#include "cli/zip_command.h"

#include <CLI/CLI.hpp>

#include <ostream>
#include <vector>

namespace quill::cli {
namespace {

constexpr const char* about = "Recover the attachments of saved mails and news posts: MIME, UUE, XXE, BinHex, yEnc.";

constexpr const char* footer =
    "Exit status: 0 everything found is whole or verified; 1 something is damaged or\n"
    "incomplete; 2 nothing was found; 3 bad usage, or a file can't be read or written.\n"
    "`quill COMMAND --help` lists the options of a command; `man quill` describes all.";

/// Returns the arguments in the order the parser expects: last one first. It would read "[a,b]" as a list of two, so a
/// file of that name is given by another path.
std::vector<std::string> for_parser(std::span<const std::string> arguments) {
    std::vector<std::string> out(arguments.rbegin(), arguments.rend());
    for (std::string& argument : out) {
        if (argument.starts_with('[') && argument.ends_with(']')) argument.insert(0, "./");
    }
    return out;
}

/// Returns `failed` if standard output could not be written completely: a full disk, a closed pipe.
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
    app.set_version_flag("--version", std::string("quill ") + QUILL_VERSION, "Print the version");
    app.require_subcommand(1);
    app.footer(footer);
    app.set_help_flag("-h,--help", "Print this help");
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.get_formatter()->label("SUBCOMMANDS", "COMMANDS");
    app.group("Commands");  // where the subcommands are listed, too
    app.get_formatter()->label("Positionals", "Arguments");
    app.get_formatter()->label("TEXT", "");      // the usage line says which arguments are texts
    app.get_formatter()->label("REQUIRED", "");  // and which are required
    add_decode_command(app, work);
    add_list_command(app, work);
    add_encode_command(app, work);
    add_merge_command(app, work);
    add_zip_command(app, work);
    add_book_command(app, work);
    add_album_command(app, work);
    add_examples(app);
    try {
        app.parse(for_parser(arguments));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            app.exit(error, console.out, console.err);  // prints the help or the version
            return flushed(ExitStatus::good, console);
        }
        console.err << complaint(app, error);
        return ExitStatus::failed;
    }
    return flushed(work(console), console);
}

}  // namespace quill::cli
