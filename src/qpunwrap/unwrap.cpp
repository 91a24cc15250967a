#include "qpunwrap/unwrap.h"

#include "files/mapped_file.h"
#include "files/names.h"
#include "files/path.h"

#include <string_view>
#include <utility>

namespace quill::qpunwrap {
namespace {

bool is_hex_digit(char c) {
    return std::string_view("0123456789ABCDEFabcdef").find(c) != std::string_view::npos;
}

std::string_view stem_of(std::string_view name) {
    return name.substr(0, files::extension_at(name));
}

/// The name that the result of `attachment` gets, which came out of the file `input`.
std::string result_name(const codec::Attachment& attachment, const std::string& input) {
    if (!attachment.message_text) return attachment.name;
    return files::safe_name(std::string(stem_of(input)).append("-").append(attachment.name));
}

/// All of a text of `size` bytes as one attachment.
codec::Attachment whole_text(const std::string& input, std::uint64_t size) {
    const std::string_view stem = stem_of(input);
    const std::string extension = stem.size() == input.size() ? ".txt" : input.substr(stem.size());
    codec::Attachment attachment;
    attachment.name = files::safe_name(std::string(stem).append("-unwrapped").append(extension));
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

bool holds_quoted_printable(std::string_view text) {
    constexpr int telling_soft_breaks = 3;
    int soft_breaks = 0;
    for (std::size_t at = text.find('='); at != text.npos; at = text.find('=', at + 1)) {
        const std::string_view next = text.substr(at + 1, 2);
        if (next.size() == 2 && is_hex_digit(next[0]) && is_hex_digit(next[1])) return true;
        const bool breaks = next.starts_with('\r') || next.starts_with('\n');
        if (breaks && ++soft_breaks == telling_soft_breaks) return true;
    }
    return false;
}

Result<Unwrapped> unwrap(const std::string& path) {
    const Result<codec::Recovery> recovery = codec::Recovery::open(std::span(&path, 1));
    if (!recovery) return recovery.error();
    const std::string input = files::name_of(path);
    const std::string dir = files::dir_of(path);
    Unwrapped out;
    for (const codec::Attachment& attachment : recovery->attachments()) {
        if (attachment.format != codec::Format::quoted_printable) continue;
        out.message = true;
        write(*recovery, attachment, files::join(dir, result_name(attachment, input)), out);
    }
    if (out.message) return out;

    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return file.error();
    if (holds_quoted_printable(file->bytes())) {
        const codec::Attachment text = whole_text(input, file->bytes().size());
        write(*recovery, text, files::join(dir, text.name), out);
    }
    return out;
}

}  // namespace quill::qpunwrap
