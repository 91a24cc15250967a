#include "codec/mail/origin.h"

#include "codec/input/line_cursor.h"
#include "codec/mail/encoded_word.h"
#include "codec/mail/message_separator.h"
#include "codec/mail/mime_header.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>

namespace quill::codec {
namespace {

constexpr std::string_view separator = "From ";
constexpr int most_lines = 2000;  // of a header

struct Field {
    std::string_view name;
    std::string Origin::*value;
};
constexpr std::array<Field, 4> fields = {{
    {"from", &Origin::from},
    {"subject", &Origin::subject},
    {"date", &Origin::date},
    {"message-id", &Origin::message_id},
}};

LineCursor cursor_at(std::string_view text, std::uint64_t offset) {
    LineCursor cursor({Segment{text, {0, text.size(), 0, 0}}});
    if (offset > 0) cursor.seek({0, offset});
    return cursor;
}

bool begins_message(std::string_view text, std::uint64_t offset) {
    if (offset > 0 && text[offset - 1] != '\n' && text[offset - 1] != '\r') return false;
    LineCursor cursor = cursor_at(text, offset);
    Line line;
    return cursor.next(line) && is_separator(cursor, line);
}

/// Returns `value` with its encoded words decoded, and each run of blanks and control characters as one blank.
std::string one_line(std::string_view value) {
    std::string out;
    for (const char c : decode_words(value)) {
        const bool blank = static_cast<unsigned char>(c) <= ' ' || c == '\x7F';
        if (!blank) out += c;
        if (blank && !out.empty() && out.back() != ' ') out += ' ';
    }
    return std::string(text::trim(out));
}

/// The lines of one field as they are read.
struct Reading {
    std::string Origin::*field = nullptr;
    std::string value;

    void begin(const Origin& origin, std::string_view line) {
        const std::string_view name = field_name(line);
        const std::string lower = text::to_lower(name);
        const auto* found =
            std::find_if(fields.begin(), fields.end(), [&](const Field& each) { return each.name == lower; });
        field = found != fields.end() && (origin.*found->value).empty() ? found->value : nullptr;
        value.clear();
        if (field != nullptr) append(line.substr(line.find(':') + 1));
    }
    void append(std::string_view line) { value += line.substr(0, longest_field - value.size()); }
    void end(Origin& origin) {
        if (field != nullptr) origin.*field = one_line(value);
        field = nullptr;
    }
};

Origin read_origin(std::string_view text, std::uint64_t begin) {
    Origin origin;
    LineCursor cursor = cursor_at(text, begin);
    Reading reading;
    Line line;
    bool any = false;
    for (int i = 0; i < most_lines && cursor.next(line); ++i) {
        if (line.text.empty() && any) break;
        if (line.text.empty() || (!any && line.text.starts_with(separator))) continue;
        if (line.text.front() == ' ' || line.text.front() == '\t') {
            reading.append(line.text);
            continue;
        }
        reading.end(origin);
        if (field_name(line.text).empty()) break;
        any = true;
        reading.begin(origin, line.text);
    }
    reading.end(origin);
    return origin;
}

}  // namespace

const Origin& OriginFinder::at(std::uint64_t offset) {
    offset = std::min<std::uint64_t>(offset, text_.size());
    if (offset < searched_) *this = OriginFinder(text_);
    // The one that is nearest to `offset` counts, so the search goes backwards.
    for (std::uint64_t end = offset; end > searched_;) {
        const std::size_t found = text_.substr(0, end).rfind(separator);
        if (found == std::string_view::npos || found + separator.size() <= searched_) break;
        if (begins_message(text_, found)) {
            begin_ = found;
            known_ = false;
            break;
        }
        end = found;
    }
    searched_ = offset;
    if (!known_) origin_ = read_origin(text_, begin_);
    known_ = true;
    return origin_;
}

}  // namespace quill::codec
