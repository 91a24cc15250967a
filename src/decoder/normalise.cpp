#include "decoder/normalise.h"

#include "decoder/joined_fields.h"
#include "text/reader.h"

#include <algorithm>
#include <array>

namespace quill::decoder {
namespace {

constexpr std::size_t shortest_body_line = 60;
constexpr std::array<std::size_t, 8> odd_line_lengths = {60, 62, 72, 73, 74, 75, 77, 78};
constexpr std::string_view disposition = "Content-Dispos";
constexpr std::uint64_t bytes_copied_singly = 1000;

bool put_line(std::string_view line, const Sink& out) {
    return out(line) && out("\r\n");
}

/// Copies the fields up to the first disposition and the one after it. Returns false if `out` stops.
bool copy_header_fields(text::Reader& reader, const Sink& out) {
    while (const std::optional<std::string_view> field = reader.field()) {
        if (!put_line(*field, out)) return false;
        if (field->size() <= disposition.size() || !field->starts_with(disposition)) continue;
        const std::optional<std::string_view> next = reader.field();
        return !next || put_line(*next, out);
    }
    return true;
}

bool ends_head(std::string_view line) {
    constexpr unsigned char highest = 128;
    return line.empty() || static_cast<unsigned char>(line.front()) > highest;
}

}  // namespace

std::size_t sample_line_length(const text::Source& text) {
    text::Reader reader(text);
    std::string_view last;
    const auto read_three = [&] {
        for (int i = 0; i < 3; ++i) last = reader.field().value_or(last);
    };
    while (!reader.at_end() && last.size() < shortest_body_line) read_three();
    read_three();
    return last.size();
}

bool is_odd_line_length(std::size_t length) {
    return std::find(odd_line_lengths.begin(), odd_line_lengths.end(), length) != odd_line_lengths.end();
}

void rewrap_body(const text::Source& text, const Sink& out) {
    text::Reader ahead(text);
    if (!copy_header_fields(ahead, out)) return;
    JoinedFields unwritten(ahead);
    std::size_t carry = 0;  // characters that `ahead` has read and `unwritten` has not
    const auto write_line = [&] {
        const std::size_t length = std::min(carry, base64_line_length);
        carry -= length;
        return unwritten.line(length, out);
    };
    while (const std::optional<std::string_view> field = next_trimmed_field(ahead)) {
        carry += field->size();
        if (!write_line()) return;
    }
    while (carry > 0) {
        if (!write_line()) return;
    }
}

std::optional<HeadEnd> copy_lines(const text::Source& text, const Sink& out) {
    text::Reader reader(text);
    HeadEnd end;
    while (std::optional<std::string_view> line = reader.line()) {
        end.offset += line->size() + (reader.reads_unix_text() ? 1 : 2);
        if (ends_head(*line)) return end;
        if (line->ends_with("  ")) line->remove_suffix(2);
        if (!put_line(*line, out)) break;
    }
    return std::nullopt;
}

std::string_view tail_from(std::string_view text, std::uint64_t offset) {
    if (offset > text.size()) return {};
    const std::string_view tail = text.substr(offset == 0 ? 0 : offset - 1);
    const bool singly = text.size() - offset <= bytes_copied_singly;
    return singly && offset > 0 ? tail.substr(1) : tail;
}

}  // namespace quill::decoder
