#include "codec/recovery/content_name.h"

#include "codec/recovery/file_signature.h"
#include "files/names.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>

namespace quill::codec {
namespace {

struct TypeExtension {
    std::string_view type;  // lower case
    std::string_view extension;
};
constexpr std::array type_extensions = {
    TypeExtension{"text/plain", ".txt"},
    TypeExtension{"text/html", ".html"},
    TypeExtension{"text/calendar", ".ics"},
    TypeExtension{"text/x-vcard", ".vcf"},
    TypeExtension{"text/vcard", ".vcf"},
    TypeExtension{"text/directory", ".vcf"},
    TypeExtension{"text/css", ".css"},
    TypeExtension{"text/csv", ".csv"},
    TypeExtension{"text/xml", ".xml"},
    TypeExtension{"text/rtf", ".rtf"},
    TypeExtension{"text/richtext", ".rtx"},
    TypeExtension{"text/enriched", ".etf"},
    TypeExtension{"image/gif", ".gif"},
    TypeExtension{"image/jpeg", ".jpg"},
    TypeExtension{"image/jpg", ".jpg"},
    TypeExtension{"image/pjpeg", ".jpg"},
    TypeExtension{"image/png", ".png"},
    TypeExtension{"image/bmp", ".bmp"},
    TypeExtension{"image/x-ms-bmp", ".bmp"},
    TypeExtension{"image/tiff", ".tif"},
    TypeExtension{"image/webp", ".webp"},
    TypeExtension{"image/svg+xml", ".svg"},
    TypeExtension{"image/x-icon", ".ico"},
    TypeExtension{"audio/basic", ".au"},
    TypeExtension{"audio/wav", ".wav"},
    TypeExtension{"audio/x-wav", ".wav"},
    TypeExtension{"audio/mpeg", ".mp3"},
    TypeExtension{"audio/midi", ".mid"},
    TypeExtension{"audio/ogg", ".ogg"},
    TypeExtension{"video/mpeg", ".mpg"},
    TypeExtension{"video/mp4", ".mp4"},
    TypeExtension{"video/quicktime", ".mov"},
    TypeExtension{"video/x-msvideo", ".avi"},
    TypeExtension{"application/pdf", ".pdf"},
    TypeExtension{"application/zip", ".zip"},
    TypeExtension{"application/x-zip-compressed", ".zip"},
    TypeExtension{"application/gzip", ".gz"},
    TypeExtension{"application/x-gzip", ".gz"},
    TypeExtension{"application/x-tar", ".tar"},
    TypeExtension{"application/msword", ".doc"},
    TypeExtension{"application/rtf", ".rtf"},
    TypeExtension{"application/postscript", ".ps"},
    TypeExtension{"application/json", ".json"},
    TypeExtension{"application/xml", ".xml"},
    TypeExtension{"application/ms-tnef", ".dat"},
    TypeExtension{"application/mac-binhex40", ".hqx"},
    TypeExtension{"application/pgp-signature", ".asc"},
    TypeExtension{"application/pgp-encrypted", ".asc"},
    TypeExtension{"application/pgp-keys", ".asc"},
    TypeExtension{"application/pkcs7-signature", ".p7s"},
    TypeExtension{"application/x-pkcs7-signature", ".p7s"},
    TypeExtension{"application/pkcs7-mime", ".p7m"},
    TypeExtension{"application/x-pkcs7-mime", ".p7m"},
    TypeExtension{"message/rfc822", ".eml"},
};

}  // namespace

std::string_view extension_for_type(std::string_view content_type) {
    const auto found = std::find_if(type_extensions.begin(), type_extensions.end(),
                                    [&](const TypeExtension& entry) { return entry.type == content_type; });
    return found == type_extensions.end() ? std::string_view() : found->extension;
}

std::string_view extension_for_bytes(std::string_view bytes) {
    const FileSignature* signature = signature_of(bytes);
    const bool fit_for_a_name = signature != nullptr && signature->kind != FileKind::program;
    return fit_for_a_name ? signature->extension : std::string_view();
}

std::string made_up_name(bool message_text, std::string_view content_type, std::string_view bytes) {
    const std::string_view by_type = extension_for_type(content_type);
    if (message_text) return std::string("message").append(by_type.empty() ? ".txt" : by_type);
    const std::string_view by_bytes = extension_for_bytes(bytes);
    if (!by_bytes.empty()) return std::string("attachment").append(by_bytes);
    return std::string("attachment").append(by_type.empty() ? ".bin" : by_type);
}

bool is_unseen(char32_t c) {
    return c == 0xAD || c == 0x34F || c == 0x61C || c == 0x180E || (c >= 0x200B && c <= 0x200F) ||
           (c >= 0x2028 && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || c == 0xFEFF;
}

bool is_blank_character(char32_t c) {
    return c == ' ' || c == '\t' || c == 0xA0 || c == 0x115F || c == 0x1160 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x202F || c == 0x205F || c == 0x2800 || c == 0x3000 || c == 0x3164 ||
           c == 0xFFA0;
}

std::string plain_name(std::string_view name) {
    const std::string safe = files::safe_name(name);
    std::string out;
    std::string blank;  // the last one read, if it was the only one in its place
    for (std::string_view rest = safe; !rest.empty();) {
        const char32_t c = text::next_character(rest);
        if (is_unseen(c)) continue;
        if (is_blank_character(c)) {
            const bool first = blank.empty();
            blank.clear();
            text::append_utf8(blank, first ? c : U' ');
        } else {
            out += blank;
            blank.clear();
            text::append_utf8(out, c);
        }
    }
    return files::safe_name(out);
}

std::string attachment_name(std::string_view name) {
    std::string safe = plain_name(name);
    std::replace(safe.begin(), safe.end(), ';', '_');
    return safe;
}

}  // namespace quill::codec
