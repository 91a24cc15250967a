#include "cli/inputs.h"

#include "files/mapped_file.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

namespace quill::cli {
namespace {

constexpr std::string_view standard_input_name = "-";

}  // namespace

ReportStyle Request::style() const {
    if (json) return ReportStyle::json;
    return quiet ? ReportStyle::silent : ReportStyle::lines;
}

bool Request::wants(const codec::Attachment& attachment) const {
    return (all || !attachment.message_text) && (forks || !attachment.resource_fork);
}

void add_request_options(CLI::App& command, Request& request) {
    command
        .add_option("FILE", request.files,
                    "Saved messages and posts; - is standard input. They are\n"
                    "read together, in any order: parts of one attachment that\n"
                    "lie in several files are joined")
        ->required();
    command.add_flag("--all", request.all, "The texts of messages too: text parts without a file name");
    command.add_flag("--forks", request.forks, "The resource forks in BinHex too, as NAME.rsrc");
    command.add_flag("--json", request.json,
                     "Tell the results as a JSON array of objects with name,\n"
                     "path, size, format, verdict, problems and sources");
    command.add_flag("--quiet", request.quiet, "Neither lines nor a progress bar; errors are still told");
}

Result<files::TemporaryFile> spool(std::istream& in) {
    Result<files::TemporaryFile> file = files::TemporaryFile::create();
    std::array<char, 1 << 16> buffer;
    errno = 0;
    while (file.ok() && (in.read(buffer.data(), buffer.size()), in.gcount() > 0)) {
        const Status written = file->write({buffer.data(), static_cast<std::size_t>(in.gcount())});
        if (!written) return written.error();
    }
    if (in.bad()) return system_error(errno == 0 ? EIO : errno);
    return file;
}

Inputs::Inputs(const Request& request, const Console& console, Report& report, ProgressBar& progress) {
    std::vector<std::string> paths;
    for (const std::string& name : request.files) {
        std::string path = name;
        if (name == standard_input_name && !standard_input_) {
            auto spooled = spool(console.in);
            if (!spooled) {
                report.fail(name, spooled.error());
                continue;
            }
            path = standard_input_.emplace(std::move(*spooled)).path();
        }
        if (const auto readable = files::MappedFile::open(path); !readable) {
            report.fail(name, readable.error());
            continue;
        }
        names_.push_back(name);
        paths.push_back(path);
    }
    if (paths.empty()) return;
    const auto on_progress = [&](std::uint64_t done, std::uint64_t total) {
        progress.show("reading", done, total);
        return true;
    };
    auto recovery =
        codec::Recovery::open(paths, on_progress, request.all ? codec::Texts::kept : codec::Texts::left_out);
    progress.clear();
    if (recovery) {
        recovery_.emplace(std::move(*recovery));
        for (const codec::Problem& problem : recovery_->problems()) report.add(problem);
    } else {
        report.fail({}, recovery.error());
    }
}

std::vector<std::string> Inputs::sources_of(const codec::Attachment& attachment) const {
    std::vector<std::string> sources;
    for (const codec::Range& range : attachment.body) {
        const std::string& name = names_.at(range.source);
        if (std::find(sources.begin(), sources.end(), name) == sources.end()) sources.push_back(name);
    }
    if (sources.empty()) sources.push_back(names_.front());
    return sources;
}

}  // namespace quill::cli
