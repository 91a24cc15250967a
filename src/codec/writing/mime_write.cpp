#include "codec/writing/mime_write.h"

#include "codec/base64/sixbit.h"
#include "codec/writing/encode.h"
#include "codec/writing/encode_output.h"
#include "text/ascii.h"
#include "text/utf8.h"
#include "text/writer.h"

#include <algorithm>
#include <string>

namespace quill::codec {
namespace {

constexpr std::size_t default_line_length = 76;

bool is_ascii(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// Returns true if all mail programs read `name` the same between double quotes. Some interpret the text after "=?" as
/// an encoded word, and '%' as a code.
bool is_plain(std::string_view name) {
    return is_ascii(name) && name.find_first_of("\"\\%") == std::string_view::npos &&
           name.find("=?") == std::string_view::npos;
}

/// Returns `utf8` as the value of a parameter whose name ends in '*' (RFC 2231 4, with the characters of RFC 5987
/// 3.2.1).
std::string extended_value(std::string_view utf8) {
    constexpr std::string_view as_they_are = "!#$&+-.^_`|~";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string value = "UTF-8''";
    for (const char c : utf8) {
        const char folded = text::lower(c);
        if ((folded >= 'a' && folded <= 'z') || (c >= '0' && c <= '9') ||
            as_they_are.find(c) != std::string_view::npos) {
            value += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            value.append({'%', digits[byte >> 4U], digits[byte & 0xFU]});
        }
    }
    return value;
}

/// Returns `utf8` as encoded words of at most 75 characters, each of whole characters, one a line (RFC 2047 2, 5).
std::string encoded_words(std::string_view utf8) {
    constexpr std::size_t most_bytes = 45;
    std::string words;
    while (!utf8.empty()) {
        std::string_view rest = utf8;
        while (!rest.empty() && utf8.size() - rest.size() + 4 <= most_bytes) text::next_character(rest);
        const std::string_view chunk = utf8.substr(0, utf8.size() - rest.size());
        std::string base64(sixbit::encoded_size(chunk.size(), 0), '\0');
        sixbit::encode_base64(chunk, 0, base64.data());
        words.append(words.empty() ? "" : "\r\n ").append("=?UTF-8?B?").append(base64).append("?=");
        utf8 = rest;
    }
    return words;
}

/// Returns `name` between double quotes: ASCII with backslashes before characters that need them (RFC 5322 3.2.4),
/// anything else as encoded words, which the standard does not allow here but nearly every program reads.
std::string quoted(std::string_view name) {
    if (!is_ascii(name) || name.find("=?") != std::string_view::npos) return '"' + encoded_words(name) + '"';
    std::string out = "\"";
    for (const char c : name) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out + '"';
}

/// Returns the header. A name that is not plain is written in the form of RFC 2231 and, for programs that don't know
/// that one, in two others.
std::string head(const std::string& name) {
    const bool plain = is_plain(name);
    std::string head;
    text::append_line(head, "MIME-Version: 1.0");
    text::append_line(head, "Subject: " + (plain ? name : encoded_words(name)));
    text::append_line(head, plain ? "Content-Type: application/octet-stream"
                                  : "Content-Type: application/octet-stream;\r\n name=" + quoted(name));
    text::append_line(head, "Content-Transfer-Encoding: base64");
    text::append_line(head, "Content-Disposition: attachment;");
    text::append_line(head, " filename=" + quoted(name) + (plain ? "" : ";"));
    if (!plain) text::append_line(head, " filename*=" + extended_value(name));
    text::append_line(head, "");
    return head;
}

}  // namespace

bool write_mime(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output) {
    const std::size_t line_length = options.line_length == 0 ? default_line_length : options.line_length;
    output.write(head(std::string(piece.name)));
    const auto bound = [line_length](std::size_t n) { return sixbit::encoded_size(n, line_length); };
    const auto encode = [line_length](std::string_view in, char* out) {
        return sixbit::encode_base64(in, line_length, out);
    };
    return encode_in_blocks(piece, output, line_length / 4 * 3, bound, encode);
}

}  // namespace quill::codec
