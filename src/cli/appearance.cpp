#include "cli/appearance.h"

#include "codec/recovery/file_signature.h"
#include "files/mapped_file.h"

#include <algorithm>
#include <string_view>

namespace quill::cli {
namespace {

constexpr std::size_t sample = 4096;
constexpr std::string_view header_fields[] = {"From ",    "From:", "Received:",   "Return-Path:",  "Path:",
                                              "Subject:", "Date:", "Message-ID:", "MIME-Version:", "Delivered-To:"};

bool is_binary(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < ' ' && std::string_view("\t\n\f\r\x1A\x1B").find(c) == std::string_view::npos;
}

}  // namespace

std::string appearance(const std::string& path) {
    const auto file = files::MappedFile::open(path);
    if (!file) return "can't be read";
    const std::string_view beginning = file->bytes().substr(0, sample);
    if (beginning.empty()) return "is empty";
    if (const codec::FileSignature* signature = codec::signature_of(beginning))
        return "looks like " + std::string(signature->what);
    const auto begins_text = [&](std::string_view field) { return beginning.starts_with(field); };
    if (std::any_of(std::begin(header_fields), std::end(header_fields), begins_text)) {
        return "looks like a message without attachments";
    }
    return std::any_of(beginning.begin(), beginning.end(), is_binary) ? "looks like data of an unknown type"
                                                                      : "looks like plain text";
}

}  // namespace quill::cli
