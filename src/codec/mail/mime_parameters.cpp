#include "codec/hex.h"
#include "codec/mail/charset.h"
#include "codec/mail/encoded_word.h"
#include "codec/mail/mime_header.h"
#include "text/ascii.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace quill::codec {
namespace {

constexpr std::size_t most_parameters = 1000;
constexpr std::uint32_t most_pieces = 1000;
constexpr std::string_view blanks = " \t\r\n";

std::string_view skip_blanks(std::string_view s) {
    const std::size_t at = s.find_first_not_of(blanks);
    return at == std::string_view::npos ? std::string_view() : s.substr(at);
}

/// Returns the value at the front of `s`, which begins with a quote, and removes it. A backslash escapes only a quote
/// or a backslash: senders write paths with single ones.
std::string take_quoted(std::string_view& s) {
    std::string out;
    std::size_t i = 1;
    for (; i < s.size() && s[i] != '"'; ++i) {
        if (s[i] == '\\' && i + 1 < s.size() && (s[i + 1] == '"' || s[i + 1] == '\\')) ++i;
        out.push_back(s[i]);
    }
    s.remove_prefix(std::min(i + 1, s.size()));
    return out;
}

/// Returns the value up to the next ';'. Drops a comment after a blank unless it may belong to a file name.
std::string take_bare(std::string_view& s, bool is_name) {
    const std::size_t end = std::min(s.find(';'), s.size());
    std::string_view value = s.substr(0, end);
    s.remove_prefix(end);
    if (!is_name) value = value.substr(0, value.find_first_of(" \t("));
    return std::string(text::trim(value));
}

Parameter take_parameter(std::string_view& s) {
    const std::size_t equals = s.find_first_of("=;");
    Parameter parameter;
    parameter.name = text::to_lower(text::trim(s.substr(0, equals)));
    if (equals == std::string_view::npos || s[equals] == ';') {
        s.remove_prefix(std::min(equals, s.size()));
        return parameter;
    }
    s = skip_blanks(s.substr(equals + 1));
    const bool is_name = parameter.name.find("name") != std::string::npos;
    parameter.value = s.starts_with('"') ? take_quoted(s) : take_bare(s, is_name);
    return parameter;
}

/// A piece of a parameter's value (RFC 2231 3 and 4): `name`, `name*`, `name*2`, `name*2*`.
struct Piece {
    std::uint32_t number = 0;
    bool extended = false;  ///< percent-encoded, the first one with its character set
    std::string_view value;
};

std::optional<Piece> piece_of(const Parameter& parameter, std::string_view name) {
    std::string_view rest = parameter.name;
    if (!rest.starts_with(name)) return std::nullopt;
    rest.remove_prefix(name.size());
    if (!rest.starts_with('*')) return std::nullopt;
    rest.remove_prefix(1);
    Piece piece;
    piece.value = parameter.value;
    if (rest.empty()) {
        piece.extended = true;
        return piece;
    }
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), piece.number);
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    if (error != std::errc() || piece.number > most_pieces || (!rest.empty() && rest != "*")) return std::nullopt;
    piece.extended = rest == "*";
    return piece;
}

std::string percent_decoded(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const std::optional<unsigned char> byte = s[i] == '%' ? hex_byte(s.substr(i + 1)) : std::nullopt;
        out.push_back(byte ? static_cast<char>(*byte) : s[i]);
        if (byte) i += 2;
    }
    return out;
}

/// Joins pieces 0, 1, 2 ... up to the first gap. `raw_charset` is that of raw 8-bit bytes.
std::string join_pieces(std::vector<Piece>& pieces, std::string_view raw_charset) {
    std::stable_sort(pieces.begin(), pieces.end(), [](const Piece& a, const Piece& b) { return a.number < b.number; });
    std::string bytes;
    std::string_view charset;
    bool encoded = false;
    std::uint32_t wanted = 0;
    for (Piece& piece : pieces) {
        if (piece.number + 1 == wanted) continue;  // a repeated piece
        if (piece.number != wanted++) break;
        if (piece.extended && wanted == 1) {
            const std::size_t language = piece.value.find('\'');
            const std::size_t data =
                language == std::string_view::npos ? language : piece.value.find('\'', language + 1);
            if (data != std::string_view::npos) {
                charset = piece.value.substr(0, language);
                piece.value.remove_prefix(data + 1);
            }
        }
        encoded = encoded || piece.extended;
        bytes += piece.extended ? percent_decoded(piece.value) : std::string(piece.value);
    }
    return encoded ? to_utf8(bytes, charset) : decode_words(bytes, raw_charset);
}

}  // namespace

StructuredValue parse_structured(std::string_view value) {
    StructuredValue out;
    std::size_t end = std::min(value.find(';'), value.size());
    std::string_view first = text::trim(value.substr(0, end));
    // "text/plain charset=x" and "image/gif name=x.gif", without the ';'
    if (const std::size_t blank = first.find_first_of(blanks); blank != std::string_view::npos) {
        const std::string_view behind = first.substr(blank);
        if (behind.find('=') != std::string_view::npos) end = static_cast<std::size_t>(behind.data() - value.data());
        first = first.substr(0, blank);
    }
    out.value = text::to_lower(first.substr(0, first.find('(')));
    std::string_view rest = value.substr(end);
    while (out.parameters.size() < most_parameters) {
        const std::size_t next = rest.find_first_not_of("; \t\r\n");
        if (next == std::string_view::npos) break;
        rest.remove_prefix(next);
        Parameter parameter = take_parameter(rest);
        if (!parameter.name.empty()) out.parameters.push_back(std::move(parameter));
    }
    return out;
}

std::string parameter_text(const StructuredValue& field, std::string_view name, std::string_view charset) {
    std::vector<Piece> pieces;
    const Parameter* plain = nullptr;
    for (const Parameter& parameter : field.parameters) {
        if (parameter.name == name && plain == nullptr) plain = &parameter;
        if (const std::optional<Piece> piece = piece_of(parameter, name)) pieces.push_back(*piece);
    }
    if (!pieces.empty()) {
        std::string joined = join_pieces(pieces, charset);
        if (!joined.empty() || plain == nullptr) return joined;
    }
    if (plain == nullptr) return {};
    return decode_words(plain->value, charset);
}

}  // namespace quill::codec
