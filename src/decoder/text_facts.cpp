#include "decoder/text_facts.h"

#include "text/ascii.h"
#include "text/reader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>

namespace quill::decoder {
namespace {

constexpr std::size_t first_lines_kept = 3;
constexpr std::size_t most_shown = 60;
constexpr std::string_view break_tag = "<BR>";

constexpr std::string_view base64_alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
constexpr std::string_view xx_alphabet = "+-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view binhex_alphabet = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr:";
constexpr std::string_view hex_digits = "0123456789ABCDEFabcdef";

/// The beginning of a line, in lower case, and what else the line must contain to announce something.
struct Announcement {
    std::string_view begins;
    std::string_view holds;
    Marker::Kind kind;
};
constexpr std::array announcements = {
    Announcement{"begin-base64 ", "", Marker::Kind::base64_begin},
    Announcement{"=ybegin ", "", Marker::Kind::yenc_begin},
    Announcement{"(this file must be converted with binhex", "", Marker::Kind::binhex_begin},
    Announcement{"content-transfer-encoding:", "base64", Marker::Kind::base64_header},
    Announcement{"content-transfer-encoding:", "uue", Marker::Kind::uu_header},
    Announcement{"content-transfer-encoding:", "quoted-printable", Marker::Kind::quoted_printable},
    Announcement{"-----begin pgp message", "", Marker::Kind::encrypted},
    Announcement{"content-type:", "pkcs7-mime", Marker::Kind::encrypted},
};

bool holds_only(std::string_view s, std::string_view alphabet) {
    return s.find_first_not_of(alphabet) == s.npos;
}

/// Returns true for "begin ", a mode of three or four octal digits, a blank, a name.
bool begins_uu(std::string_view line) {
    constexpr std::string_view word = "begin ";
    if (!line.starts_with(word)) return false;
    line.remove_prefix(word.size());
    const std::size_t blank = line.find(' ');
    return (blank == 3 || blank == 4) && holds_only(line.substr(0, blank), "01234567") && line.size() > blank + 1;
}

std::optional<Marker::Kind> announced_by(std::string_view line) {
    constexpr std::size_t enough_of_a_header = 200;
    if (begins_uu(line)) return Marker::Kind::uu_begin;
    const std::string lower = text::to_lower(line.substr(0, enough_of_a_header));
    for (const Announcement& announcement : announcements) {
        if (lower.starts_with(announcement.begins) && lower.find(announcement.holds) != lower.npos) {
            return announcement.kind;
        }
    }
    return std::nullopt;
}

std::uint64_t count_of(std::string_view text, std::string_view what) {
    std::uint64_t count = 0;
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + what.size())) ++count;
    return count;
}

std::uint64_t count_escapes(std::string_view text) {
    std::uint64_t count = 0;
    for (std::size_t at = text.find('='); at != text.npos; at = text.find('=', at + 1)) {
        const std::string_view digits = text.substr(at + 1, 2);
        if (digits.size() == 2 && holds_only(digits, hex_digits)) ++count;
    }
    return count;
}

void count_characters(std::string_view text, TextFacts& facts) {
    std::array<std::uint64_t, 256> counts = {};
    for (const char c : text) ++counts[static_cast<unsigned char>(c)];
    for (unsigned value = 0; value < counts.size(); ++value) {
        const auto c = static_cast<char>(value);
        const std::uint64_t n = counts[value];
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
        facts.characters += n;
        if (base64_alphabet.find(c) == std::string_view::npos) facts.outside_base64 += n;
        if (xx_alphabet.find(c) == std::string_view::npos) facts.outside_xx += n;
        if (binhex_alphabet.find(c) == std::string_view::npos) facts.outside_binhex += n;
        if (value < '!' || value > '`') facts.outside_uu += n;
        if (value < ' ' || value == 0x7F) facts.control += n;
        if (value > 0x7F) facts.eight_bit += n;
    }
}

void note_marker(std::string_view line, TextFacts& facts) {
    const std::optional<Marker::Kind> kind = announced_by(line);
    if (!kind) return;
    const bool known = std::any_of(facts.markers.begin(), facts.markers.end(),
                                   [&](const Marker& marker) { return marker.kind == *kind; });
    if (!known) facts.markers.push_back({*kind, facts.lines, shown(line)});
}

void note_line(std::string_view line, TextFacts& facts) {
    ++facts.lines;
    if (line.empty()) {
        ++facts.empty_lines;
        return;
    }
    facts.longest = std::max<std::uint64_t>(facts.longest, line.size());
    facts.shortest = facts.shortest == 0 ? line.size() : std::min<std::uint64_t>(facts.shortest, line.size());
    if (facts.first_lines.size() < first_lines_kept) facts.first_lines.push_back(shown(line));
    if (line.ends_with('=')) ++facts.soft_breaks;
    if (line.starts_with('M') && (line.size() == 61 || line.size() == 62)) ++facts.full_uu_lines;
    note_marker(line, facts);
}

}  // namespace

std::string shown(std::string_view line) {
    std::string out;
    for (const char c : line.substr(0, most_shown)) out += c >= ' ' && c <= '~' ? c : '.';
    if (line.size() > most_shown) out += "...";
    return out;
}

TextFacts look_at(std::string_view bytes) {
    TextFacts facts;
    facts.size = bytes.size();
    const std::string_view text = bytes.substr(0, most_bytes_looked_at);
    facts.looked_at = text.size();

    count_characters(text, facts);
    facts.break_tags = count_of(text, break_tag);
    facts.escapes = count_escapes(text);
    facts.equals = count_of(text, "=");
    if (!text::is_unix_text(text)) facts.lone_line_feeds = count_of(text, "\n") - count_of(text, "\r\n");

    text::Reader reader(text);
    std::unordered_map<std::size_t, std::uint64_t> lengths;
    while (const std::optional<std::string_view> line = reader.line()) {
        note_line(*line, facts);
        if (!line->empty()) ++lengths[line->size()];
    }
    for (const auto& [length, count] : lengths) {
        const bool more = count > facts.usual_count || (count == facts.usual_count && length > facts.usual_length);
        if (more) {
            facts.usual_length = length;
            facts.usual_count = count;
        }
    }
    return facts;
}

}  // namespace quill::decoder
