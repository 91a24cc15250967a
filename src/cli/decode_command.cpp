#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/interruption.h"
#include "files/copies.h"
#include "files/directory.h"
#include "files/extended_attributes.h"
#include "files/path.h"
#include "files/unfinished.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cerrno>
#include <memory>
#include <set>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace quill::cli {
namespace {

struct DecodeRequest : Request {
    std::string into;         ///< empty: each result goes beside its first source
    bool again = false;       ///< write files again even if they exist
    bool provenance = false;  ///< note in each file which mail it was in
};

/// Where the results of a run go.
class Outputs {
  public:
    explicit Outputs(const DecodeRequest& request) : request_(request) {}

    /// Returns a path for `name` in a directory that exists; the directory of --into is made at the first call.
    Result<std::string> path_of(const std::string& name, const std::string& beside);

    /// Returns the path of a file that has the bytes of `written` under the name `path` or a numbered one.
    std::optional<std::string> find_copy(const std::string& path, const files::AtomicFile& written);

  private:
    const DecodeRequest& request_;
    files::Unfinished made_;  ///< the directory; removed if it stays empty
    std::set<std::string> cleaned_;
    files::Copies copies_;
};

/// Fails if results can't go into `path`, whether or not it exists yet.
Status may_be_directory(const std::string& path) {
    if (!files::exists(path)) {
        const std::string parent = files::dir_of(path);
        if (parent.empty() || files::exists(parent)) return Done{};
    }
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return system_error(errno);
    if (!S_ISDIR(status.st_mode)) return system_error(ENOTDIR);
    return Done{};
}

Result<std::string> Outputs::path_of(const std::string& name, const std::string& beside) {
    const std::string& directory = request_.into.empty() ? beside : request_.into;
    if (!request_.into.empty() && made_.path().empty()) {
        Result<files::Unfinished> made = files::make_output_directory(directory);
        if (!made) return made.error();
        made_ = std::move(*made);
    }
    if (cleaned_.insert(directory).second) files::remove_abandoned(directory);
    return files::join(directory, name);
}

std::optional<std::string> Outputs::find_copy(const std::string& path, const files::AtomicFile& written) {
    if (request_.again || !files::exists(path)) return std::nullopt;
    const auto bytes = written.read_back();
    return bytes ? copies_.find(path, bytes->bytes()) : std::nullopt;
}

/// The state of a run.
struct Run {
    const DecodeRequest& request;
    Report report;
    ProgressBar progress;
    Outputs outputs;
};

/// Returns `text`, cut between two characters where it is too long: all attributes of a file share one block.
std::string_view attribute_of(std::string_view text) {
    constexpr std::size_t longest = 1000;
    if (text.size() <= longest) return text;
    std::size_t end = longest;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return text.substr(0, end);
}

/// Notes in a file that was written now which mail it was in (freedesktop.org, "Guidelines for Extended Attributes").
void note_origin(const codec::Origin& origin, codec::Recovered& written, Report& report) {
    const std::array<std::pair<const char*, const std::string&>, 3> attributes = {{
        {"user.xdg.origin.email.from", origin.from},
        {"user.xdg.origin.email.subject", origin.subject},
        {"user.xdg.origin.email.message-id", origin.message_id},
    }};
    written.origin = origin;
    if (written.already_there) return;
    for (const auto& [name, value] : attributes) {
        if (value.empty()) continue;
        const Status set = files::set_extended_attribute(written.path, name, attribute_of(value));
        if (!set)
            return report.fail(written.path, {set.error().code, 0, "its mail can't be noted: " + set.error().text});
    }
}

/// Decodes one attachment into its directory and reports the result.
void decode_one(const codec::Attachment& attachment, const Inputs& inputs, Run& run) {
    const auto on_progress = [&](std::uint64_t done, std::uint64_t total) {
        run.progress.show(attachment.name, done, total);
        return !Interruption::caught();
    };
    const Result<std::string> path = run.outputs.path_of(attachment.name, inputs.beside(attachment));
    if (!path) return run.report.fail(run.request.into, path.error());
    auto written =
        inputs.recovery()->write(attachment, *path, files::OnCollision::choose_name, on_progress,
                                 [&](const files::AtomicFile& file) { return run.outputs.find_copy(*path, file); });
    run.progress.clear();
    const std::vector<std::string> sources = inputs.sources_of(attachment);
    if (written) {
        written->sources = sources;
        if (run.request.provenance) note_origin(inputs.recovery()->origin_of(attachment), *written, run.report);
        run.report.add(*written, inputs.input_of(attachment));
    } else if (written.error().code == ErrorCode::bad_input) {
        // Nothing could be decoded: still a result, but one without a file.
        codec::Outcome outcome = inputs.recovery()->check(attachment, on_progress);
        if (Interruption::caught()) return;
        run.report.add({attachment.name, "", attachment.format, outcome, sources}, inputs.input_of(attachment));
    } else if (written.error().code != ErrorCode::cancelled) {
        run.report.fail(*path, written.error());
    }
}

ExitStatus decode(const DecodeRequest& request, const Console& console) {
    Run run{request, Report(console, request.results.style()), ProgressBar(console, !request.results.quiet),
            Outputs(request)};
    if (const Status usable = may_be_directory(request.into); !request.into.empty() && !usable) {
        run.report.fail(request.into, usable.error());
        return run.report.finish();
    }
    InputList list(request, console, run.report);
    const Interruption interruption;
    for (const std::span<Input> group : list.groups()) {
        const Inputs inputs(group, request, run.report, run.progress);
        if (inputs.recovery() == nullptr) continue;
        for (const codec::Attachment& attachment : inputs.recovery()->attachments()) {
            if (Interruption::caught()) break;
            if (!request.wants(attachment)) continue;
            inputs.mark(attachment);
            decode_one(attachment, inputs, run);
        }
        if (Interruption::caught()) break;
    }
    return run.report.finish(Interruption::caught() ? std::vector<std::string>() : list.empty_inputs());
}

}  // namespace

void add_decode_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("decode", "Write the attachments in the files to the disk");
    const auto request = std::make_shared<DecodeRequest>();
    command
        ->add_option("--into", request->into,
                     "Write into this directory instead of beside each input; it is\n"
                     "made if it does not exist")
        ->type_name("DIR");
    command->add_flag("--again", request->again, "Write files again even if they exist, as name (2).ext");
    command->add_flag("--provenance", request->provenance,
                      "Note in each new file which mail it was in: sender, subject and\n"
                      "message id, as extended attributes");
    add_request_options(*command, *request);
    command->footer(
        "Each result is a line: name, size in bytes, verdict, format, with tabs between;\n"
        "`already there` follows if a file of that name has the same bytes: then nothing is\n"
        "written. The verdict is `verified` (a checksum or a stated size agrees),\n"
        "`whole`, `damaged` or `incomplete`. If a name is taken, the result is `name (2).ext`; no\n"
        "file is ever replaced. Attachments in a Maildir are written beside it. Exit status:\n"
        "0 all is whole or verified; 1 something is damaged or incomplete; 2 nothing was\n"
        "found; 3 bad usage, or a file can't be read or written.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return decode(*request, console); }; });
}

}  // namespace quill::cli
