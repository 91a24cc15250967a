#include "codec/recovery/library.h"

#include "codec/recovery/content_name.h"
#include "codec/writing/encode.h"
#include "files/directory.h"
#include "files/names.h"

#include <algorithm>
#include <array>

namespace quill::codec {
namespace {

/// Returns the files that the library reports: all except the texts of messages and resource forks.
std::vector<const Attachment*> files_of(const Recovery& recovery) {
    std::vector<const Attachment*> out;
    for (const Attachment& attachment : recovery.attachments()) {
        if (attachment.message_text || attachment.resource_fork) continue;
        out.push_back(&attachment);
    }
    return out;
}

std::vector<std::string> split(const std::string& names) {
    std::vector<std::string> out;
    std::size_t at = 0;
    while (at < names.size()) {
        const std::size_t end = std::min(names.find(';', at), names.size());
        out.push_back(names.substr(at, end - at));
        at = end + 1;
    }
    return out;
}

std::uint64_t encoded_size(const Attachment& attachment) {
    std::uint64_t size = 0;
    for (const Range& range : attachment.body) size += range.end - range.begin;
    return size;
}

Recovered unwritten(const Attachment& attachment, const std::string& name, const Error& error) {
    Recovered out;
    out.name = name;
    out.format = attachment.format;
    const bool nothing = error.code == ErrorCode::bad_input;
    out.outcome.add({nothing ? ProblemKind::not_decoded : ProblemKind::not_written, error.offset, {}, error.text});
    return out;
}

}  // namespace

bool DecodingLibrary::read(const std::string& path) {
    input_.reset();
    Result<Recovery> recovery = Recovery::open(std::array{path}, on_progress, Texts::left_out);
    if (recovery) input_ = Input{path, std::move(*recovery)};
    return recovery.ok();
}

std::int32_t DecodingLibrary::GetNumFilesToDecode(const std::string& path) {
    names_.clear();
    given_out_.clear();
    last_number_.clear();
    if (!read(path)) return 0;
    for (const Attachment* attachment : files_of(input_->recovery)) names_.push_back(attachment->name);
    return static_cast<std::int32_t>(names_.size());
}

void DecodingLibrary::GetEncodedFile(std::string& name, std::int32_t index) const {
    if (index >= 0 && static_cast<std::size_t>(index) < names_.size()) name = names_[static_cast<std::size_t>(index)];
}

void DecodingLibrary::GetUniqueFileName(std::string& name) {
    unsigned& number = last_number_[name];
    std::string unique;
    do {
        unique = files::numbered_name(name, ++number);
    } while (given_out_.contains(unique) || files::exists(unique));
    given_out_.insert(unique);
    name = unique;
}

std::int32_t DecodingLibrary::DecodeFile(const std::string& path, const std::string& names, std::int32_t) {
    results_.clear();
    if ((!input_ || input_->path != path) && !read(path)) return 0;
    const Recovery& recovery = input_->recovery;
    const std::vector<const Attachment*> attachments = files_of(recovery);
    const std::vector<std::string> wanted = split(names);
    std::uint64_t total = 0;
    for (const Attachment* attachment : attachments) total += encoded_size(*attachment);
    std::uint64_t before = 0;
    const OnProgress of_all = [&](std::uint64_t done, std::uint64_t) {
        return !on_progress || on_progress(before + done, total);
    };
    for (std::size_t i = 0; i < std::min(attachments.size(), wanted.size()); ++i) {
        const std::string name = attachment_name(wanted[i]);
        if (name.empty()) continue;
        Attachment attachment = *attachments[i];
        attachment.dots_doubled = dots_doubled;
        Result<Recovered> recovered = recovery.write(attachment, name, files::OnCollision::choose_name, of_all);
        if (!recovered && recovered.error().code == ErrorCode::cancelled) break;
        results_.push_back(recovered ? std::move(*recovered) : unwritten(attachment, name, recovered.error()));
        before += encoded_size(attachment);
        if (!of_all(0, total)) break;
    }
    input_.reset();
    return std::any_of(results_.begin(), results_.end(), [](const Recovered& r) { return !r.path.empty(); }) ? 1 : 0;
}

std::int32_t DecodingLibrary::EncodeFile(const std::string& input, const std::string& output, std::int32_t format,
                                         std::int32_t) {
    const OutputFormat* chosen = output_format(format);
    return chosen != nullptr && encode_file(input, output, *chosen, {.on_collision = files::OnCollision::replace}) ? 1
                                                                                                                   : 0;
}

}  // namespace quill::codec
