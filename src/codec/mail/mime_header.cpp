#include "codec/mail/mime_header.h"

#include "codec/base64/sixbit.h"
#include "codec/mail/encoded_word.h"
#include "text/ascii.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace quill::codec {
namespace {

struct EncodingName {
    std::string_view name;  // lower case
    TransferEncoding encoding;
};
constexpr std::array encoding_names = {
    EncodingName{"7bit", TransferEncoding::identity},
    EncodingName{"8bit", TransferEncoding::identity},
    EncodingName{"binary", TransferEncoding::identity},
    EncodingName{"base64", TransferEncoding::base64},
    EncodingName{"base-64", TransferEncoding::base64},
    EncodingName{"x-base64", TransferEncoding::base64},
    EncodingName{"quoted-printable", TransferEncoding::quoted_printable},
    EncodingName{"quoted_printable", TransferEncoding::quoted_printable},
    EncodingName{"x-uuencode", TransferEncoding::uuencode},
    EncodingName{"uuencode", TransferEncoding::uuencode},
    EncodingName{"x-uue", TransferEncoding::uuencode},
    EncodingName{"uue", TransferEncoding::uuencode},
    EncodingName{"x-uu", TransferEncoding::uuencode},
    EncodingName{"x-xxencode", TransferEncoding::uuencode},
    EncodingName{"x-binhex", TransferEncoding::binhex},
    EncodingName{"x-binhex40", TransferEncoding::binhex},
    EncodingName{"mac-binhex40", TransferEncoding::binhex},
    EncodingName{"x-mac-binhex40", TransferEncoding::binhex},
    EncodingName{"binhex", TransferEncoding::binhex},
    EncodingName{"x-yencode", TransferEncoding::yenc},
    EncodingName{"yenc", TransferEncoding::yenc},
};

std::optional<std::uint64_t> number_in(std::string_view s) {
    s = text::trim(s);
    std::uint64_t n = 0;
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), n);
    if (error != std::errc() || end == s.data()) return std::nullopt;
    return n;
}

std::uint32_t small_number_in(std::string_view s) {
    const std::uint64_t n = number_in(s).value_or(0);
    return n > 1'000'000 ? 0 : static_cast<std::uint32_t>(n);
}

void take_content_type(ContentHeader& header, std::string_view value) {
    const StructuredValue field = parse_structured(value);
    if (!header.type.empty()) return;
    header.type = field.value;
    // "application\octet-stream": written by some encoders.
    std::replace(header.type.begin(), header.type.end(), '\\', '/');
    header.charset = parameter_text(field, "charset");
    header.boundary = parameter_text(field, "boundary");
    if (header.file_name.empty()) header.file_name = parameter_text(field, "name", header.charset);
    if (header.file_name.empty()) header.file_name = parameter_text(field, "filename", header.charset);
    if (header.type != "message/partial") return;
    header.partial_id = parameter_text(field, "id");
    header.partial_number = small_number_in(parameter_text(field, "number"));
    header.partial_total = small_number_in(parameter_text(field, "total"));
}

void take_disposition(ContentHeader& header, std::string_view value) {
    const StructuredValue field = parse_structured(value);
    if (header.has_disposition) return;
    header.has_disposition = true;
    header.disposition = field.value;
    std::string name = parameter_text(field, "filename", header.charset);
    if (name.empty()) name = parameter_text(field, "name", header.charset);
    if (!name.empty()) header.file_name = std::move(name);
    header.size = number_in(parameter_text(field, "size"));
}

/// Uses the first word that names an encoding: "base64", "base64 (see RFC 2045)", "\"base64\"", "is base64".
void take_encoding(ContentHeader& header, std::string_view value) {
    if (header.has_encoding) return;
    const std::string lower = text::to_lower(value);
    std::string_view rest = lower;
    while (!rest.empty()) {
        const std::size_t begin = rest.find_first_not_of(" \t\r\n\";,()'");
        if (begin == std::string_view::npos) return;
        rest.remove_prefix(begin);
        const std::string_view word = rest.substr(0, rest.find_first_of(" \t\r\n\";,()'"));
        for (const EncodingName& known : encoding_names) {
            if (known.name != word) continue;
            header.encoding = known.encoding;
            header.has_encoding = true;
            return;
        }
        rest.remove_prefix(word.size());
    }
}

void take_md5(ContentHeader& header, std::string_view value) {
    value = text::trim(value);
    if (header.md5 || value.size() > 32) return;
    std::array<char, sixbit::decoded_bound(32) + 2> room = {};
    sixbit::State state;
    std::size_t size = sixbit::decode(sixbit::Alphabet::base64, value, room.data(), state).written;
    size += sixbit::finish(room.data() + size, state);
    if (size != 16) return;
    header.md5.emplace();
    std::copy_n(room.begin(), size, header.md5->begin());
}

struct KnownField {
    std::string_view name;  // lower case
    void (*take)(ContentHeader&, std::string_view);
};
constexpr std::array known_fields = {
    KnownField{"content-type", take_content_type},
    KnownField{"content-disposition", take_disposition},
    KnownField{"content-transfer-encoding", take_encoding},
    KnownField{"content-encoding", [](ContentHeader&, std::string_view) {}},
    KnownField{"content-md5", take_md5},
    KnownField{"content-length",
               [](ContentHeader& header, std::string_view value) { header.content_length = number_in(value); }},
    KnownField{"content-id", [](ContentHeader&, std::string_view) {}},
    KnownField{"content-description", [](ContentHeader&, std::string_view) {}},
    KnownField{"content-location", [](ContentHeader&, std::string_view) {}},
    KnownField{"subject",
               [](ContentHeader& header, std::string_view value) {
                   if (header.subject.empty()) header.subject = decode_words(text::trim(value));
               }},
};

constexpr std::array<std::string_view, 19> message_fields = {
    "from",  "to",          "subject",    "date",         "message-id",  "received", "mime-version",
    "cc",    "return-path", "newsgroups", "path",         "references",  "reply-to", "sender",
    "lines", "xref",        "x-mailer",   "delivered-to", "organization"};

}  // namespace

std::string_view field_name(std::string_view line) {
    const std::size_t colon = line.substr(0, 256).find(':');
    if (colon == std::string_view::npos || colon == 0) return {};
    const std::string_view name = line.substr(0, line.find_last_not_of(" \t", colon - 1) + 1);
    const bool printable = std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c < '\x7F'; });
    return name.size() <= colon && printable ? name : std::string_view();
}

bool is_known_field(std::string_view name) {
    const std::string lower = text::to_lower(name);
    return std::any_of(known_fields.begin(), known_fields.end(),
                       [&](const KnownField& f) { return f.name == lower; }) ||
           std::find(message_fields.begin(), message_fields.end(), lower) != message_fields.end();
}

void take_field(ContentHeader& header, std::string_view name, std::string_view value) {
    const std::string lower = text::to_lower(name);
    if (std::find(message_fields.begin(), message_fields.end(), lower) != message_fields.end())
        header.is_message = true;
    for (const KnownField& known : known_fields) {
        if (known.name != lower) continue;
        known.take(header, value);
        if (lower.starts_with("content-")) header.is_message = header.has_content_field = true;
    }
}

}  // namespace quill::codec
