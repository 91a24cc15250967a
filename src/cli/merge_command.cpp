#include "cli/commands.h"
#include "cli/report.h"
#include "encoder/merge.h"
#include "files/path.h"

#include <CLI/CLI.hpp>

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

/// Says what the merge lacks; whether that is anything.
bool tell_gaps(const Console& console, const encoder::Merged& merged) {
    for (const encoder::LeftOut& file : merged.left_out) complain(console, file.path, "left out: " + file.reason);
    for (const unsigned number : merged.missing)
        complain(console, "part " + std::to_string(number), "in none of the files");
    return !merged.left_out.empty() || !merged.missing.empty();
}

ExitStatus merge(const MergeRequest& request, const Console& console) {
    const std::string output =
        request.output.empty() ? files::join(files::dir_of(request.files.front()), "merged.txt") : request.output;
    const bool as_yenc = request.yenc || (!request.text && encoder::hold_yenc_parts(request.files));
    const Result<encoder::Merged> merged =
        as_yenc ? encoder::merge_yenc(request.files, output) : encoder::merge_text(request.files, output);
    if (!merged) {
        complain(console, output, merged.error().text);
        return ExitStatus::failed;
    }
    console.out << printable(output) << "\t" << merged->size << "\t" << merged->parts << " parts\n";
    return tell_gaps(console, *merged) ? ExitStatus::damaged : ExitStatus::good;
}

}  // namespace

void add_merge_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("merge", "Join the posts of one attachment into one file, without decoding it");
    const auto request = std::make_shared<MergeRequest>();
    command->add_option("FILE", request->files, "The posts, each saved as a file")->required();
    command->add_option("--output", request->output, "Where to write (default: merged.txt beside the first file)");
    auto* yenc = command->add_flag("--yenc", request->yenc, "Join yEnc parts, in the order of their numbers");
    auto* text = command->add_flag("--text", request->text, "Join line by line, in the order given (UUE, XXE, MIME)");
    yenc->excludes(text);
    command->footer(
        "Without --yenc or --text, files that all hold yEnc parts are joined as such, others as text.\n"
        "An existing output is replaced once the new one is whole. Exit status 1 where a file was left\n"
        "out or a part is missing. `quill decode` on the parts themselves needs no merge.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return merge(*request, console); }; });
}

}  // namespace quill::cli
