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
    bool force = false;
    ResultOptions results;
};

void complain(const Console& console, const std::string& about, const std::string& reason) {
    console.err << "quill: " << printable(about) << ": " << printable(reason) << "\n";
}

/// Reports what the merge lacks and returns the resulting status.
ExitStatus report_gaps(const Console& console, const std::string& output, const encoder::Merged& merged) {
    ExitStatus status = ExitStatus::good;
    for (const encoder::LeftOut& file : merged.left_out) {
        complain(console, file.path, "left out: " + file.reason);
        status = std::max(status, file.unreadable ? ExitStatus::failed : ExitStatus::damaged);
    }
    for (const std::string& doubt : encoder::doubts_about(merged)) {
        complain(console, output, doubt);
        status = std::max(status, ExitStatus::damaged);
    }
    return status;
}

void report_output(const std::string& output, const encoder::Merged& merged, Results& results) {
    const std::string size = std::to_string(merged.size), parts = std::to_string(merged.parts);
    if (!results.are_json()) return results.put(printable(output) + "\t" + size + "\t" + parts + " parts");
    const auto left_out = [](const encoder::LeftOut& file) {
        return json_object({{"path", json_string(file.path)}, {"reason", json_string(file.reason)}});
    };
    results.put(json_object({{"name", json_string(files::name_of(output))},
                             {"path", json_string(output)},
                             {"size", size},
                             {"parts", parts},
                             {"missing", json_array(merged.missing, [](unsigned n) { return std::to_string(n); })},
                             {"in_order", json_flag(merged.in_order)},
                             {"left_out", json_array(merged.left_out, left_out)}}));
}

/// Fails if `output` must not be written.
Status check_output(const std::string& output, const MergeRequest& request) {
    const auto is_output = [&](const std::string& input) { return files::same_file(input, output); };
    if (std::any_of(request.files.begin(), request.files.end(), is_output)) return output_is_input();
    const bool taken = files::exists(output) && !files::is_special(output);
    return taken && !request.force ? Status(output_exists()) : Status(Done{});
}

Result<encoder::Merged> join(const MergeRequest& request, const std::string& output, ProgressBar& bar) {
    const auto show = [&](const encoder::MergeProgress& at) {
        constexpr double steps = 1000;
        const double done = (static_cast<double>(at.index) + at.of_piece) / static_cast<double>(at.count);
        bar.show(output, static_cast<std::uint64_t>(done * steps), static_cast<std::uint64_t>(steps));
        return !Interruption::caught();
    };
    const files::OnCollision on_collision = request.force ? files::OnCollision::replace : files::OnCollision::fail;
    const bool as_yenc = request.yenc || (!request.text && encoder::hold_yenc_parts(request.files));
    return as_yenc ? encoder::merge_yenc(request.files, output, show, on_collision)
                   : encoder::merge_text(request.files, output, show, on_collision);
}

ExitStatus merge(const MergeRequest& request, const Console& console) {
    const std::string output =
        request.output.empty() ? files::join(files::dir_of(request.files.front()), "merged.txt") : request.output;
    if (const Status allowed = check_output(output, request); !allowed) {
        complain(console, output, allowed.error().text);
        return ExitStatus::failed;
    }
    ProgressBar bar(console, !request.results.quiet);
    const Interruption interruption;
    const Result<encoder::Merged> merged = join(request, output, bar);
    bar.clear();
    if (!merged) {
        if (merged.error().code != ErrorCode::cancelled) complain(console, output, merged.error().text);
        return ExitStatus::failed;
    }
    Results results(console, request.results.style());
    if (!files::is_special(output)) report_output(output, *merged, results);
    results.finish();
    return report_gaps(console, output, *merged);
}

}  // namespace

void add_merge_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("merge", "Join the posts of one attachment into one file, without decoding it");
    const auto request = std::make_shared<MergeRequest>();
    command->add_option("FILE", request->files, "The posts, two or more, each saved as a file")
        ->required()
        ->expected(2, -1);
    command
        ->add_option("--output", request->output,
                     "Where to write (default: merged.txt beside the first file);\na pipe or a device is written into")
        ->type_name("PATH");
    command->add_flag("--force", request->force, "Replace an existing output");
    auto* yenc = command->add_flag("--yenc", request->yenc, "Join yEnc parts, in the order of their numbers");
    auto* text = command->add_flag("--text", request->text, "Join line by line, in the order given (UUE, XXE, MIME)");
    yenc->excludes(text);
    add_result_options(*command, request->results);
    command->footer(
        "Without --yenc or --text, files that all hold yEnc parts are joined as such, and\n"
        "others as text. An existing output is replaced only with --force, once the new one\n"
        "is complete; an input never is. Exit status: 0 all parts are joined; 1 a part is\n"
        "missing, is in the wrong order, or was left out; 3 a file can't be read (the others\n"
        "are still joined), the output exists already, or it can't be written.\n"
        "`quill decode` joins parts itself and needs no merge.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return merge(*request, console); }; });
}

}  // namespace quill::cli
