#include "cli/commands.h"
#include "cli/inputs.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace quill::cli {
namespace {

ExitStatus list(const Request& request, const Console& console) {
    Report report(console, request.style());
    ProgressBar progress(console, !request.quiet);
    const Inputs inputs(request, console, report, progress);
    if (inputs.recovery() == nullptr) return report.finish();
    for (const codec::Attachment& attachment : inputs.recovery()->attachments()) {
        if (!request.wants(attachment)) continue;
        report.add({attachment.name, "", attachment.format, inputs.recovery()->check(attachment),
                    inputs.sources_of(attachment)});
    }
    return report.finish();
}

}  // namespace

void add_list_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("list", "Tell what the files hold, and write nothing");
    const auto request = std::make_shared<Request>();
    add_request_options(*command, *request);
    command->footer("The lines are those of `quill decode`, which see.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return list(*request, console); }; });
}

}  // namespace quill::cli
