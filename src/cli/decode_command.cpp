#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/interruption.h"
#include "files/path.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace quill::cli {
namespace {

struct DecodeRequest : Request {
    std::string into;  ///< empty: each result goes beside its first source
};

Status is_directory(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return system_error(errno);
    if (!S_ISDIR(status.st_mode)) return system_error(ENOTDIR);
    return Done{};
}

/// Decodes one attachment into its directory and tells what came of it.
void decode_one(const codec::Attachment& attachment, const DecodeRequest& request, const Inputs& inputs, Report& report,
                ProgressBar& progress) {
    const std::vector<std::string> sources = inputs.sources_of(attachment);
    const std::string directory = request.into.empty() ? files::dir_of(sources.front()) : request.into;
    const std::string path = files::join(directory, attachment.name);
    auto written = inputs.recovery()->write(attachment, path, files::OnCollision::choose_name,
                                            [&](std::uint64_t done, std::uint64_t total) {
                                                progress.show(attachment.name, done, total);
                                                return !Interruption::caught();
                                            });
    progress.clear();
    if (written) {
        written->sources = sources;
        report.add(*written);
    } else if (written.error().code == ErrorCode::bad_input) {
        // Nothing of it could be decoded: a result, though one without a file.
        report.add({attachment.name, "", attachment.format, inputs.recovery()->check(attachment), sources});
    } else if (written.error().code != ErrorCode::cancelled) {
        report.fail(path, written.error());
    }
}

ExitStatus decode(const DecodeRequest& request, const Console& console) {
    Report report(console, request.style());
    ProgressBar progress(console, !request.quiet);
    if (!request.into.empty()) {
        if (const Status usable = is_directory(request.into); !usable) {
            report.fail(request.into, usable.error());
            return report.finish();
        }
    }
    const Inputs inputs(request, console, report, progress);
    if (inputs.recovery() == nullptr) return report.finish();
    const Interruption interruption;
    for (const codec::Attachment& attachment : inputs.recovery()->attachments()) {
        if (Interruption::caught()) break;
        if (request.wants(attachment)) decode_one(attachment, request, inputs, report, progress);
    }
    return report.finish();
}

}  // namespace

void add_decode_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("decode", "Write what the files hold to the disk");
    const auto request = std::make_shared<DecodeRequest>();
    command->add_option("--into", request->into, "Write into this directory, instead of beside each input")
        ->type_name("DIR");
    add_request_options(*command, *request);
    command->footer(
        "Each result is a line: name, size in bytes, verdict, format, with tabs between.\n"
        "The verdict is `verified` (a checksum or a stated size agrees), `whole`,\n"
        "`damaged` or `incomplete`. A name that is taken becomes `name (2).ext`; no file is\n"
        "ever replaced. Exit status: 0 all is whole or verified; 1 something is damaged or\n"
        "incomplete; 2 nothing was found; 3 bad usage, or a file can't be read or written.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return decode(*request, console); }; });
}

}  // namespace quill::cli
