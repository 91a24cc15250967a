#include "cli/inputs.h"

#include "cli/appearance.h"
#include "cli/mail_tree.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"
#include "text/count.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <string_view>
#include <sys/resource.h>
#include <utility>

namespace quill::cli {
namespace {

constexpr std::string_view standard_input_name = "-";

/// Returns how many inputs may be open at once: the system's limit for open and mapped files, minus a few for outputs.
std::size_t most_open() {
    constexpr rlim_t most_mapped = 30'000;
    constexpr rlim_t spare = 32;
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return 256;
    return std::clamp<rlim_t>(limit.rlim_cur, 2 * spare, most_mapped + spare) - spare;
}

}  // namespace

bool Request::wants(const codec::Attachment& attachment) const {
    return (all || !attachment.message_text) && (forks || !attachment.resource_fork);
}

void add_request_options(CLI::App& command, Request& request) {
    add_file_names(command, request.names,
                   "Saved messages and posts, and directories with all that is\n"
                   "in them; - is standard input. They are read together, in any\n"
                   "order: parts of one attachment that are in several files are\n"
                   "joined");
    command.add_flag("--all", request.all, "Include the texts of messages: text parts without a file name");
    command.add_flag("--forks", request.forks, "Include the resource forks of BinHex files, as NAME.rsrc");
    add_result_options(command, request.results);
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

InputList::InputList(const Request& request, const Console& console, Report& report) {
    const Result<std::vector<std::string>> names = all_names(request.names, console.in);
    if (!names) {
        report.fail(request.names.list, names.error());
        return;
    }
    for (const std::string& name : *names) add(name, console.in, report);
}

void InputList::add(const std::string& name, std::istream& standard_input, Report& report) {
    if (name == standard_input_name && !standard_input_) {
        Result<files::TemporaryFile> spooled = spool(standard_input);
        if (!spooled) return report.fail(name, spooled.error());
        add_file({name, standard_input_.emplace(*std::move(spooled)).path(), {}}, report);
    } else if (files::is_directory(name)) {
        MailTree tree = mail_tree(name);
        for (MailFile& file : tree.files) add_file({file.path, file.path, std::move(file.beside), name}, report);
        for (const MailTree::Failure& failure : tree.failures) report.fail(failure.path, failure.error);
    } else {
        add_file({name, name, files::dir_of(name)}, report);
    }
}

void InputList::add_file(Input input, Report& report) {
    if (const auto readable = files::MappedFile::open(input.path); !readable) {
        report.fail(input.name, readable.error());
    } else {
        inputs_.push_back(std::move(input));
    }
}

std::vector<std::span<Input>> InputList::groups() {
    std::vector<std::span<Input>> out;
    const std::size_t most = most_open();
    for (std::span<Input> rest = inputs_; !rest.empty(); rest = rest.subspan(std::min(most, rest.size()))) {
        out.push_back(rest.first(std::min(most, rest.size())));
    }
    return out;
}

std::vector<std::string> InputList::empty_inputs() const {
    const std::string nothing = "no attachment was found";
    const std::string looked_for = inputs_.size() == 1 ? " (MIME, UUE, XXE, BinHex, yEnc, quoted-printable)" : "";
    std::vector<std::string> out;
    std::map<std::string, std::pair<std::size_t, std::size_t>> walked;  // files without and with a result
    for (const Input& input : inputs_) {
        auto& [empty, full] = walked[input.walked];
        ++(input.held_something ? full : empty);
        if (input.held_something || !input.walked.empty()) continue;
        out.push_back(input.name + ": " + nothing + looked_for + "; it " + appearance(input.path));
    }
    for (const auto& [directory, files] : walked) {
        const auto& [empty, full] = files;
        if (directory.empty() || empty == 0) continue;
        out.push_back(directory + ": " + nothing + " in " + std::to_string(empty) + " of " +
                      text::counted(empty + full, "file"));
    }
    return out;
}

Inputs::Inputs(std::span<Input> inputs, const Request& request, Report& report, ProgressBar& progress)
    : inputs_(inputs) {
    std::vector<std::string> paths;
    for (const Input& input : inputs) paths.push_back(input.path);
    const auto on_progress = [&](std::uint64_t done, std::uint64_t total) {
        progress.show("reading", done, total);
        return true;
    };
    auto recovery =
        codec::Recovery::open(paths, on_progress, request.all ? codec::Texts::kept : codec::Texts::left_out);
    progress.clear();
    if (recovery) {
        recovery_.emplace(std::move(*recovery));
        for (const codec::Problem& problem : recovery_->problems()) report.add(problem, input_of({}));
    } else {
        for (Input& input : inputs_) input.held_something = true;  // not known
        report.fail({}, recovery.error());
    }
}

void Inputs::mark(const codec::Attachment& attachment) const {
    for (const std::uint32_t input : recovery_->inputs_of(attachment)) inputs_[input].held_something = true;
    for (const std::uint32_t source : attachment.copies_in) inputs_[source].held_something = true;
}

NameOfInput Inputs::input_of(const codec::Attachment& attachment) const {
    const std::vector<std::string> sources = sources_of(attachment);
    return [inputs = inputs_, only = sources.size() == 1 ? sources.front() : std::string()](
               const codec::Problem& problem) -> std::string {
        if (inputs.size() == 1) return {};
        return problem.source ? inputs[*problem.source].name : only;
    };
}

std::vector<std::string> Inputs::sources_of(const codec::Attachment& attachment) const {
    std::vector<std::string> sources;
    for (const std::uint32_t input : recovery_->inputs_of(attachment)) {
        const std::string& name = inputs_[input].name;
        if (std::find(sources.begin(), sources.end(), name) == sources.end()) sources.push_back(name);
    }
    if (sources.empty()) sources.push_back(inputs_.front().name);
    return sources;
}

const std::string& Inputs::beside(const codec::Attachment& attachment) const {
    const std::vector<std::uint32_t> inputs = recovery_->inputs_of(attachment);
    return inputs_[inputs.empty() ? 0 : inputs.front()].beside;
}

}  // namespace quill::cli
