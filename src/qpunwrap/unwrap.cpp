#include "qpunwrap/unwrap.h"

#include "files/mapped_file.h"
#include "files/names.h"
#include "files/path.h"
#include "qpunwrap/signs.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quill::qpunwrap {
namespace {

std::string_view stem_of(std::string_view name) {
    return name.substr(0, files::extension_at(name));
}

std::string unwrapped_name(const std::string& input) {
    const std::string_view stem = stem_of(input);
    const std::string extension = stem.size() == input.size() ? ".txt" : input.substr(stem.size());
    return files::safe_name(std::string(stem).append("-unwrapped").append(extension));
}

/// Returns true if `attachment` has no header: it begins where the text does, perhaps after a byte order mark.
bool is_bare(const codec::Attachment& attachment) {
    constexpr std::uint64_t byte_order_mark = 3;
    return !attachment.body.empty() && attachment.body.front().begin <= byte_order_mark;
}

/// Returns the name for the result of `attachment`, which comes from the file `input`.
std::string result_name(const codec::Attachment& attachment, const std::string& input) {
    if (is_bare(attachment)) return unwrapped_name(input);
    if (!attachment.message_text) return attachment.name;
    return files::safe_name(std::string(stem_of(input)).append("-").append(attachment.name));
}

/// Returns all of a text of `size` bytes as one attachment.
codec::Attachment whole_text(const std::string& input, std::uint64_t size) {
    codec::Attachment attachment;
    attachment.name = unwrapped_name(input);
    attachment.format = codec::Format::quoted_printable;
    attachment.body = {{0, size}};
    return attachment;
}

void write(const codec::Recovery& recovery, const codec::Attachment& attachment, const std::string& path,
           Unwrapped& out) {
    Result<codec::Recovered> written = recovery.write(attachment, path, files::OnCollision::choose_name);
    if (written) {
        out.made.push_back(std::move(*written));
    } else {
        out.failed.push_back(files::name_of(path) + ": " + written.error().text);
    }
}

}  // namespace

Result<Unwrapped> unwrap(const std::string& path) {
    const Result<codec::Recovery> recovery = codec::Recovery::open(std::span(&path, 1));
    if (!recovery) return recovery.error();
    const std::string input = files::name_of(path);
    const std::string dir = files::dir_of(path);
    std::vector<codec::Attachment> found = recovery->attachments();
    std::erase_if(found, [](const auto& attachment) { return attachment.format != codec::Format::quoted_printable; });
    Unwrapped out;
    out.message = !std::all_of(found.begin(), found.end(), is_bare);
    if (out.message) {
        for (const codec::Attachment& attachment : found) {
            write(*recovery, attachment, files::join(dir, result_name(attachment, input)), out);
        }
        return out;
    }
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return file.error();
    if (!found.empty() || holds_quoted_printable(file->bytes())) {
        const codec::Attachment text = whole_text(input, file->bytes().size());
        write(*recovery, text, files::join(dir, text.name), out);
    }
    return out;
}

}  // namespace quill::qpunwrap
