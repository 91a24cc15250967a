#include "codec/mail/header_block.h"

#include "text/ascii.h"

namespace quill::codec {
namespace {

constexpr std::size_t peeked = 1024;

bool is_blank(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

/// Returns true for a line that continues the field before it without a leading blank: the field ended in ';', or the
/// line is a parameter.
bool is_unindented_fold(std::string_view value, std::string_view line) {
    const std::string_view before = text::trim(value);
    if (!before.ends_with(';')) return false;
    const std::size_t equals = line.substr(0, 64).find('=');
    if (equals == std::string_view::npos || equals == 0) return false;
    return line.substr(0, equals).find_first_of(" \t<>@/") == std::string_view::npos;
}

/// The field being assembled.
struct Field {
    std::string name;
    std::string value;
    bool cut = false;  ///< this or an earlier one exceeds the stored length

    void begin(std::string_view line) {
        const std::string_view called = field_name(line);
        name.clear();
        value.clear();
        if (!is_known_field(called)) return;
        name = called;
        append(line.substr(line.find(':') + 1));
    }
    void append(std::string_view line) {
        if (name.empty()) return;
        const std::string_view kept = line.substr(0, longest_field - value.size());
        value += kept;
        cut = cut || kept.size() < line.size();
    }
    void end(ContentHeader& header) {
        if (!name.empty()) take_field(header, name, value);
        name.clear();
    }
};

/// Returns true if, in a double-spaced header, the empty line before `at` is only spacing.
bool is_spacing(const LineCursor& cursor, Position at) {
    Line line;
    if (!cursor.peek(at, peeked, line) || is_blank(line.text)) return false;
    return !field_name(line.text).empty() || line.text.front() == ' ' || line.text.front() == '\t';
}

bool begins_field(std::string_view line) {
    const std::string_view name = field_name(line);
    if (name.empty()) return false;
    return line[name.size()] == ':' || is_known_field(name);
}

/// Returns true if the header continues after a line of only blanks, which is folded in (RFC 5322 4.2): fields follow
/// up to an empty line, and at least one of them is a field that messages have.
bool goes_on_behind_blanks(const LineCursor& cursor, Position at) {
    bool known = false;
    Line line;
    for (int i = 0; i < 64 && cursor.peek(at, peeked, line); ++i, at = line.next) {
        if (line.text.empty()) return known;
        const bool folded = line.text.front() == ' ' || line.text.front() == '\t';
        if (!folded && field_name(line.text).empty()) return false;
        known = known || begins_message_header(line.text);
    }
    return false;
}

}  // namespace

bool begins_message_header(std::string_view line) {
    const std::string_view name = field_name(line);
    return !name.empty() && is_known_field(name);
}

bool goes_on_double_spaced(const LineCursor& cursor, Position at) {
    Line line;
    bool known = false;
    for (int i = 0; i < 2; ++i) {
        if (!cursor.peek(at, peeked, line) || field_name(line.text).empty() || !line.ended) return false;
        known = known || begins_message_header(line.text);
        if (!cursor.peek(line.next, peeked, line) || !is_blank(line.text)) return false;
        at = line.next;
    }
    return known;
}

HeaderBlock read_header(LineCursor& cursor, const IsStop& is_stop) {
    HeaderBlock block;
    Field field;
    Line line;
    while (true) {
        const Position before = cursor.position();
        if (!cursor.next(line)) break;
        const bool blanks = !line.text.empty() && is_blank(line.text);
        if (blanks && block.fields > 0 && goes_on_behind_blanks(cursor, cursor.position())) continue;
        if (line.text.empty() || (block.fields > 0 && blanks)) {
            if (block.fields == 1 && !block.double_spaced) {
                block.double_spaced = goes_on_double_spaced(cursor, cursor.position());
            }
            if (block.double_spaced && is_spacing(cursor, cursor.position())) continue;
            block.separated = true;
            break;
        }
        const bool folded = line.text.front() == ' ' || line.text.front() == '\t';
        if (!folded && is_stop(line)) {
            cursor.seek(before);
            break;
        }
        if (folded || is_unindented_fold(field.value, line.text)) {
            field.append(folded ? line.text : std::string(" ").append(line.text.substr(0, longest_field)));
        } else if (begins_field(line.text)) {
            field.end(block.header);
            field.begin(line.text);
            ++block.fields;
        } else {
            cursor.seek(before);
            break;
        }
    }
    field.end(block.header);
    block.cut = field.cut;
    return block;
}

}  // namespace quill::codec
