#include "cli/commands.h"
#include "cli/interruption.h"
#include "cli/progress.h"
#include "cli/report.h"
#include "encoder/merge.h"
#include "files/directory.h"
#include "files/path.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <ostream>
#include <vector>

namespace quill::cli {
namespace {

struct MergeRequest {
    std::vector<std::string> files;
    std::string output;
    bool yenc = false;
    bool text = false;
};

void complain(const Console& console, const std::string& about, const std::string& reason) {
    console.err << "quill: " << printable(about) << ": " << printable(reason) << "\n";
}

/// Says what the merge lacks, and tells the status that this makes.
ExitStatus tell_gaps(const Console& console, const encoder::Merged& merged) {
    ExitStatus status = ExitStatus::good;
    for (const encoder::LeftOut& file : merged.left_out) {
        complain(console, file.path, "left out: " + file.reason);
        status = std::max(status, file.unreadable ? ExitStatus::failed : ExitStatus::damaged);
    }
    for (const unsigned number : merged.missing) {
        complain(console, "part " + std::to_string(number), "in none of the files");
        status = std::max(status, ExitStatus::damaged);
    }
    return status;
}

ExitStatus merge(const MergeRequest& request, const Console& console) {
    const std::string output =
        request.output.empty() ? files::join(files::dir_of(request.files.front()), "merged.txt") : request.output;
    const auto is_output = [&](const std::string& input) { return files::same_file(input, output); };
    if (std::any_of(request.files.begin(), request.files.end(), is_output)) {
        complain(console, output, "the output would replace an input");
        return ExitStatus::failed;
    }
    ProgressBar bar(console);
    const Interruption interruption;
    const auto show = [&](const encoder::MergeProgress& at) {
        constexpr double steps = 1000;
        const double done = (static_cast<double>(at.index) + at.of_piece) / static_cast<double>(at.count);
        bar.show(output, static_cast<std::uint64_t>(done * steps), static_cast<std::uint64_t>(steps));
        return !Interruption::caught();
    };
    const bool as_yenc = request.yenc || (!request.text && encoder::hold_yenc_parts(request.files));
    const Result<encoder::Merged> merged =
        as_yenc ? encoder::merge_yenc(request.files, output, show) : encoder::merge_text(request.files, output, show);
    bar.clear();
    if (!merged) {
        complain(console, output, merged.error().text);
        return ExitStatus::failed;
    }
    console.out << printable(output) << "\t" << merged->size << "\t" << merged->parts << " parts\n";
    return tell_gaps(console, *merged);
}

}  // namespace

void add_merge_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("merge", "Join the posts of one attachment into one file, without decoding it");
    const auto request = std::make_shared<MergeRequest>();
    command->add_option("FILE", request->files, "The posts, two or more, each saved as a file")
        ->required()
        ->expected(2, -1);
    command->add_option("--output", request->output, "Where to write (default: merged.txt beside the first file)")
        ->type_name("PATH");
    auto* yenc = command->add_flag("--yenc", request->yenc, "Join yEnc parts, in the order of their numbers");
    auto* text = command->add_flag("--text", request->text, "Join line by line, in the order given (UUE, XXE, MIME)");
    yenc->excludes(text);
    command->footer(
        "Without --yenc or --text, files that all hold yEnc parts are joined as such, others as text.\n"
        "An existing output is replaced once the new one is whole; an input never is. Exit status 1 where a part is\n"
        "missing or has no place in the series, 3 where a file can't be read (the others are joined nevertheless) or\n"
        "nothing could be written. `quill decode` on the parts themselves needs no merge.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return merge(*request, console); }; });
}

}  // namespace quill::cli
