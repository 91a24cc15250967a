#include "decoder/virus_guard.h"

#include "decoder/results.h"
#include "files/directory.h"
#include "files/file_stamp.h"
#include "files/path.h"
#include "shell/long_run.h"
#include "shell/main_window.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

namespace quill::decoder {
namespace {

using platform::ProgramEnd;
using platform::ProgramResult;
using shell::Scan;
using shell::ScanAnswer;

/// A program that ends with status 0 if it found nothing and 1 if it found something.
struct Scanner {
    std::string_view name;
    std::array<std::string_view, 4> options;  ///< empty ones are skipped
    std::uint64_t most_bytes;                 ///< larger files are not passed to it
    std::string_view checked;                 ///< what "nothing found" refers to, if that may not be the whole file
};

constexpr Scanner scanners[] = {
    // Its service's settings limit how much is read; the rest counts as clean.
    {"clamdscan",
     {"--fdpass", "--no-summary", "", ""},
     std::numeric_limits<std::uint64_t>::max(),
     ", within its limits"},
    {"clamscan",
     {"--no-summary", "--max-filesize=2000M", "--max-scansize=2000M", "--alert-exceeds-max=yes"},
     2'000'000'000,
     ""},
};

/// Returns the row of `program`; nullptr if its answers are unknown.
const Scanner* known_scanner(const std::string& program) {
    const std::string name = files::name_of(program);
    const auto* const scanner =
        std::find_if(std::begin(scanners), std::end(scanners), [&](const Scanner& each) { return each.name == name; });
    return scanner == std::end(scanners) ? nullptr : scanner;
}

/// Returns the installed programs of the table, in its order.
std::vector<std::string> installed_scanners(shell::Context& context) {
    std::vector<std::string> found;
    for (const Scanner& scanner : scanners) {
        const std::string path = context.platform.programs().find(std::string(scanner.name));
        if (!path.empty()) found.push_back(path);
    }
    return found;
}

/// Returns why a result is not an answer; empty if it is one.
std::string reason_for_no_answer(const ProgramResult& result) {
    switch (result.end) {
        case ProgramEnd::not_started:
            return "it could not be started";
        case ProgramEnd::killed:
            return "it was killed, or the system kept no status of it";
        case ProgramEnd::stopped:
            return "you stopped it";
        case ProgramEnd::exited:
            break;
    }
    return result.status == 0 || result.status == 1 ? "" : "it ended with status " + std::to_string(result.status);
}

/// Runs `program` on the file at `path`. Unless it gives a plain answer about the whole, unchanged file, the file
/// counts as not checked.
Scan run_scanner(shell::Context& context, const Scanner& scanner, const std::string& program, const std::string& path) {
    const std::string name(scanner.name);
    const auto not_checked = [&](const std::string& reason) {
        return Scan{ScanAnswer::not_checked, name + " did not check this file: " + reason,
                    files::stamp_through_links(path).value_or(files::FileStamp())};
    };
    const std::optional<files::FileStamp> before = files::stamp_through_links(path);
    if (!before) return not_checked("it can't be read");
    if (before->size > scanner.most_bytes) return not_checked("it is too large");
    shell::LongRun run(context.platform, shell::run_panel(context.windows.load<shell::swit>()),
                       "Checking " + files::name_of(path) + " with " + name);
    std::vector<std::string> arguments(scanner.options.begin(), scanner.options.end());
    std::erase(arguments, "");
    arguments.push_back(files::absolute(files::resolved(path)));  // it may skip links
    const ProgramResult result = context.platform.programs().run(program, arguments, [&] { return run.goes_on(0, 1); });
    if (const std::string reason = reason_for_no_answer(result); !reason.empty()) return not_checked(reason);
    if (files::stamp_through_links(path) != before) return not_checked("it changed meanwhile");
    if (result.status == 1)
        return {ScanAnswer::found, name + " found something harmful in this file, or more than it reads", *before};
    return {ScanAnswer::nothing_found, "no virus found by " + name + std::string(scanner.checked), *before};
}

/// Tries `program`; if it gives no answer, tries those after it in the table: the first needs a service that may not be
/// running.
Scan run_scanners(shell::Context& context, const std::string& program, const std::string& path) {
    Scan scan = run_scanner(context, *known_scanner(program), program, path);
    const std::vector<std::string> installed = installed_scanners(context);
    auto next = std::find(installed.begin(), installed.end(), program);
    while (scan.answer == ScanAnswer::not_checked && next != installed.end() && ++next != installed.end()) {
        if (context.windows.load<shell::swit>().stop_wanted) break;
        scan = run_scanner(context, *known_scanner(*next), *next, path);
    }
    return scan;
}

void start_only(shell::Context& context, const std::string& program, const std::string& path,
                const std::string& directory) {
    const std::vector<std::string> arguments = files::exists(path) ? std::vector{path} : std::vector<std::string>();
    if (context.platform.opener().start(program, arguments, directory)) return;
    context.platform.warn(files::name_of(program) + " could not be started.");
}

/// Returns true if the user decided on something other than choosing a program.
bool scanned_with_known(shell::Context& context, const std::string& path) {
    std::string program = context.session.Scanner;
    if (program.empty()) {
        const std::vector<std::string> installed = installed_scanners(context);
        if (installed.empty()) return false;
        program = installed.front();
    }
    enum Answer : std::size_t { check, another, cancel };
    const std::size_t answer = context.platform.choose(
        {.text = "Check " + files::name_of(path) + " for viruses with " + files::name_of(program) + "?",
         .title = "Virus check",
         .answers = {"&Check", "&Another program", "Cancel"},
         .default_answer = check,
         .escape_answer = cancel});
    if (answer == check) scan_with(context, program, path, files::dir_of(program));
    if (answer == another) context.routes.choose_scanner(path);
    return true;
}

}  // namespace

void scanbutt(shell::Context& context) {
    context.windows.load<shell::swit>().Option1.chosen = true;
    offer_scan(context, files::join(context.session.SelectedDir, context.session.SelectedFile));
}

void offer_scan(shell::Context& context, const std::string& path) {
    if (!context.routes.choose_scanner) return shell::say_not_yet(context.platform, "check files for viruses");
    if (scanned_with_known(context, path)) return;
    const bool yes = context.platform.ask({.text = " You have not configured this program to work with your anti-virus "
                                                   "program to scan zip files, would you like to do so now?",
                                           .title = "No Anti-virus has been setup",
                                           .no_is_default = true,
                                           .question_mark = true});
    if (yes) context.routes.choose_scanner(path);
}

void scan_with(shell::Context& context, const std::string& program, const std::string& path,
               const std::string& directory) {
    if (files::same_file(program, path)) {
        context.platform.warn(files::name_of(path) + " is the file to be checked, so it is not started.");
        return;
    }
    context.session.Scanner = program;
    if (known_scanner(program) == nullptr) return start_only(context, program, path, directory);
    const Scan scan = run_scanners(context, program, path);
    keep_scan(context.windows.load<shell::swit>(), path, scan);
    context.platform.message(files::name_of(path) + ": " + scan.text + ".");
}

}  // namespace quill::decoder
