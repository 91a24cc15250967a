#include "codec/scan/scanner.h"

#include "codec/base64/base64_lines.h"
#include "codec/input/tagged_lines.h"
#include "codec/mail/message_separator.h"
#include "codec/recovery/part_label.h"
#include "codec/recovery/part_signs.h"
#include "codec/scan/scan_run.h"
#include "text/ascii.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace quill::codec {

bool Scanner::is_stop(const Line& line) const {
    if (line.continued) return false;
    if (line.text.starts_with("--")) return stack_.match(line.text).has_value() || is_guessed_boundary(line);
    return begins_message(line);
}

/// Returns true for a separator outside the length stated in the message's header.
bool Scanner::begins_message(const Line& line) const {
    return is_separator(cursor_, line) && line.begin >= message_end_;
}

/// Stores the end of the message whose header is `block` (Content-Length), if it does end there: at the end of the text
/// or before a line that begins another message.
void Scanner::keep_stated_length(const HeaderBlock& block) {
    message_end_ = {};
    if (!block.header.content_length) return;
    Position end = cursor_.position();
    const std::string_view rest = cursor_.rest(end);
    if (*block.header.content_length > rest.size()) return;
    end.offset += *block.header.content_length;
    Line next;
    for (unsigned i = 0; i < 2 && cursor_.peek(end, peeked_characters, next) && next.text.empty(); ++i) end = next.next;
    if (end >= cursor_.last() || (!next.continued && next.text.starts_with("From "))) message_end_ = end;
}

/// Returns true for a line that must be a boundary although it is unknown: a part's header follows at once.
bool Scanner::is_guessed_boundary(const Line& line) const {
    const std::string_view text = line.text.substr(0, line.text.find_last_not_of(" \t") + 1);
    if (!text.starts_with("--") || text.size() < 3 || text.size() > longest_boundary) return false;
    const std::optional<Leaf>& leaf = stack_.levels.back().leaf;
    if (leaf && leaf->sealed) return false;
    Line next;
    return cursor_.peek(line.next, peeked_characters, next) && is_content_field(next.text);
}

bool Scanner::take_boundary(const Line& line) {
    const std::optional<EntityStack::Match> match = stack_.match(line.text);
    if (!match) return take_guessed_boundary(line);
    cross_boundary(*match, before_line_end(cursor_, line.begin), line.begin);
    return true;
}

void Scanner::cross_boundary(EntityStack::Match match, Position data_end, Position begin) {
    pop_to(match.level, data_end, false);
    Level& level = stack_.top();
    text_.in_armor = false;
    level.closed = match.closing;
    level.end = begin;
    if (match.closing) return;
    ++level.parts;
    open_part(level.header.type == "multipart/digest", false);
}

/// Handles, in a body of Base64, a boundary that is indented or quoted, or without a line end before it.
bool Scanner::take_misplaced_boundary(const Line& line) {
    const std::optional<Leaf>& leaf = stack_.top().leaf;
    const std::size_t at = line.text.find("--");
    if (!leaf || leaf->header.encoding != TransferEncoding::base64 || at == 0 || at == line.text.npos) return false;
    const std::string_view before = line.text.substr(0, at);
    const bool indented = before.find_first_not_of(" \t>|") == before.npos;
    if (!indented && !is_base64_line(before)) return false;
    const std::optional<EntityStack::Match> match = stack_.match(line.text.substr(at));
    if (!match) return false;
    Position data_end = line.begin;
    data_end.offset += at;
    cross_boundary(*match, indented ? before_line_end(cursor_, line.begin) : data_end, line.begin);
    return true;
}

/// Handles, after a body of Base64, the header of a part or message whose boundary, or "From " line, is lost.
bool Scanner::take_unannounced_header(const Line& line) {
    if (field_name(line.text).empty() || !announces_content(cursor_, line)) return false;
    Leaf& leaf = *stack_.top().leaf;
    if (leaf.embedded) return false;
    if (!leaf.data_end && !ends_base64(cursor_, line.begin, leaf.line_size)) leaf.data_end = line.begin;
    cursor_.seek(line.begin);
    if (stack_.levels.size() == 1) {
        pop_to(0, line.begin, false);
        begin_message();
    } else {
        close_leaf(stack_.top(), line.begin, false);
        ++stack_.top().parts;
        open_part(false, false);
    }
    return true;
}

/// Handles, in a piece of a message, the header of a message that contains the next piece, if "From " lines are lost;
/// after a rule between articles, that of any message.
bool Scanner::take_next_piece(const Line& line) {
    const Leaf& leaf = *stack_.top().leaf;
    if (leaf.header.type != "message/partial" || stack_.levels.size() > 1 || field_name(line.text).empty())
        return false;
    const Position end = before_rule(cursor_, line.begin);
    const bool after_rule = end != line.begin;
    const bool article = after_rule && begins_article(cursor_, line);
    if (!article) {
        if ((!after_rule && !is_behind_blank(cursor_, line.begin)) || !announces_content(cursor_, line)) return false;
        const Position behind = cursor_.position();
        cursor_.seek(line.begin);
        const bool piece = read_header(cursor_, is_stop_).header.type == "message/partial";
        cursor_.seek(behind);
        if (!piece) return false;
    }
    cursor_.seek(line.begin);
    pop_to(0, before_line_end(cursor_, end), false);
    begin_message();
    return true;
}

bool Scanner::take_guessed_boundary(const Line& line) {
    if (!is_guessed_boundary(line)) return false;
    const std::string_view text = line.text.substr(2, line.text.find_last_not_of(" \t") - 1);
    Level& top = stack_.top();
    if (top.leaf && top.leaf->opaque) close_leaf(top, before_line_end(cursor_, line.begin), false);
    if (stack_.levels.size() > deepest_nesting) return false;
    open_multipart({});
    Level& level = stack_.top();
    level.boundary = text;
    level.guessed = true;
    level.parts = 1;
    open_part(false, false);
    return true;
}

/// Handles the beginning of a message: after the separator of an mbox file, or if the text so far was not a message.
bool Scanner::take_message(const Line& line) {
    if (begins_message(line)) {
        const Position end = before_line_end(cursor_, line.begin);
        pop_to(0, end, true);
        begin_message();
        return true;
    }
    if (text_.in_message || !begins_message_header(line.text)) return false;
    Line next;
    const bool alone = !cursor_.peek(line.next, peeked_characters, next) || is_blank_line(next.text);
    const bool goes_on =
        !alone && (!field_name(next.text).empty() || next.text.front() == ' ' || next.text.front() == '\t');
    const bool spaced = alone && goes_on_double_spaced(cursor_, next.next);
    if (!goes_on && !spaced && !(alone && is_content_field(line.text))) return false;
    cursor_.seek(line.begin);
    begin_message();
    return true;
}

/// Handles a part's header in the middle of running text: of a message that was copied into another, or whose own
/// header is lost. It counts if it states the encoding of the lines after it, or that a piece of a message follows.
bool Scanner::take_embedded_header(const Line& line) {
    if (!is_content_field(line.text)) return false;
    cursor_.seek(line.begin);
    const HeaderBlock block = read_header(cursor_, is_stop_);
    const ContentHeader& header = block.header;
    Line first;
    const bool encoded = header.encoding == TransferEncoding::base64 &&
                         peek_text(text_, cursor_.position(), 3, first) && is_base64_line(first.text);
    const bool named = header.encoding == TransferEncoding::quoted_printable && !header.file_name.empty();
    const bool piece = !header.partial_id.empty() && stack_.levels.size() == 1 &&
                       peek_text(text_, cursor_.position(), 3, first) &&
                       (is_base64_line(first.text) || !field_name(first.text).empty());
    if (piece) {
        cursor_.seek(line.begin);
        pop_to(0, before_line_end(cursor_, line.begin), false);
        begin_message();
        return true;
    }
    if (stack_.levels.size() > deepest_nesting) return true;
    if (is_multipart(header) && !header.boundary.empty()) {
        open_multipart(header);
    } else if (encoded || named) {
        open_leaf(block, true);
    }
    return true;
}

/// Takes the label that `line` states. A subject without one that names something else ends the label before it.
void Scanner::take_label(std::string_view line) {
    constexpr std::string_view subject = "subject:";
    auto label = read_part_label(line);
    if (!label && text::starts_with_ignoring_case(line, subject)) {
        const std::string_view name = text::trim(line.substr(subject.size()));
        const std::string& file = text_.label.file;
        label = label_of_subject(name);
        if (!label && name.find(file) == name.npos && file.find(name) == file.npos) label = PartLabel{};
    }
    if (label && label->number > 0 && label->file.empty()) label->file = text_.label.file;
    if (label) text_.label = std::move(*label);
}

void Scanner::take_text(const Line& line) {
    if (line.text.empty() || take_message(line) || take_embedded_header(line)) return;
    take_label(line.text);
    for (const TextFormat& format : text_formats()) {
        if (format.sniff(line.text) && format.open(text_, line)) return;
    }
}

/// Watches, in a body of Base64, for the place where the data ends and other text begins. Lines of the same length are
/// not examined.
void Scanner::follow_data(const Line& line) {
    Leaf& leaf = *stack_.top().leaf;
    if (leaf.header.encoding != TransferEncoding::base64 || line.text.size() == leaf.line_size ||
        is_blank_line(line.text)) {
        if (!line.text.empty() && line.text.size() == leaf.line_size) {
            leaf.data_end.reset();
            // Boundaries contain a '-'; the line that begins a message, and most other text, contains a blank.
            cursor_.skip_to_line_with('-', ' ');
        }
        return;
    }
    // There may be tags at line ends, and further rows after them.
    std::size_t tags = 0;
    const std::string_view row = first_row(line.text.substr(pass_tags(line.text, tags)));
    if (row.empty() || is_base64_line(row)) {
        if (leaf.line_size == 0) leaf.line_size = line.text.size();
        return;
    }
    const bool begun = leaf.line_size > 0;
    if (!begun || take_misplaced_boundary(line) || take_unannounced_header(line)) return;
    if (leaf.data_end || base64_resumes(text_, line.next)) return;
    // Lines of other text without a '-' or a blank were skipped.
    leaf.data_end = std::max(leaf.begin, end_of_rows(cursor_, line.begin));
    if (leaf.embedded) pop_to(stack_.levels.size() - 2, *leaf.data_end, false);
}

Found Scanner::run() {
    Line line;
    while (cursor_.next(line)) {
        if (line.continued) continue;
        line_begin_ = line.begin;
        const bool opaque = stack_.top().leaf && stack_.top().leaf->opaque;
        if (line.text.starts_with('-') && take_boundary(line)) continue;
        if (!opaque) {
            take_text(line);
        } else if ((!begins_message(line) || !take_message(line)) && !take_next_piece(line)) {
            follow_data(line);
        }
    }
    line_begin_ = cursor_.last();
    pop_to(0, cursor_.last(), true);
    std::stable_sort(found_.files.begin(), found_.files.end(),
                     [](const FoundFile& a, const FoundFile& b) { return a.order < b.order; });
    return std::move(found_);
}

Found scan(LineCursor& cursor, Texts texts, std::size_t room, std::uint32_t part_number) {
    return Scanner(cursor, texts, room, part_number).run();
}

}  // namespace quill::codec
