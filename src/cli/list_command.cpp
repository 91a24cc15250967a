#include "cli/commands.h"
#include "cli/inputs.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace quill::cli {
namespace {

void list_group(const Inputs& inputs, const Request& request, Report& report, ProgressBar& progress) {
    const codec::Recovery& recovery = *inputs.recovery();
    for (const codec::Attachment& attachment : recovery.attachments()) {
        if (!request.wants(attachment)) continue;
        codec::Outcome outcome = recovery.check(attachment, [&](std::uint64_t done, std::uint64_t total) {
            progress.show(attachment.name, done, total);
            return true;
        });
        progress.clear();
        inputs.mark(attachment);
        report.add({attachment.name, "", attachment.format, std::move(outcome), inputs.sources_of(attachment)},
                   inputs.input_of(attachment));
    }
}

ExitStatus list(const Request& request, const Console& console) {
    Report report(console, request.results.style());
    ProgressBar progress(console, !request.results.quiet);
    InputList files(request, console, report);
    for (const std::span<Input> group : files.groups()) {
        const Inputs inputs(group, request, report, progress);
        if (inputs.recovery() != nullptr) list_group(inputs, request, report, progress);
    }
    return report.finish(files.empty_inputs());
}

}  // namespace

void add_list_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("list", "List the attachments in the files, and write nothing");
    const auto request = std::make_shared<Request>();
    add_request_options(*command, *request);
    command->footer("The output is that of `quill decode`; see its help.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return list(*request, console); }; });
}

}  // namespace quill::cli
