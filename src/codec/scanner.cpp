#include "codec/scanner.h"

#include "codec/base64_lines.h"
#include "codec/entity_stack.h"
#include "codec/header_block.h"
#include "codec/hex.h"
#include "codec/nested_message.h"
#include "codec/part_label.h"
#include "codec/tagged_lines.h"
#include "codec/text_scan.h"
#include "text/ascii.h"

#include <algorithm>
#include <utility>

namespace quill::codec {
namespace {

constexpr unsigned most_nested_headers = 10'000;
constexpr unsigned most_checked_lines = 64;

/// The place of the line end before `at`, or `at` where there is none.
Position before_line_end(const LineCursor& cursor, Position at) {
    const Segment& segment = cursor.segment(at);
    const auto back = [&](char c) {
        if (at.offset <= segment.range.begin || segment.input[at.offset - 1] != c) return false;
        --at.offset;
        return true;
    };
    if (back('\n')) {
        if (back('\r')) back('\r');
    } else {
        back('\r');
    }
    return at;
}

bool has_time(std::string_view line) {
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    line = line.substr(0, peeked_characters);
    for (std::size_t at = line.find(':'); at != std::string_view::npos; at = line.find(':', at + 1)) {
        if (at > 0 && at + 2 < line.size() && digit(line[at - 1]) && digit(line[at + 1]) && digit(line[at + 2]))
            return true;
    }
    return false;
}

Position behind_byte_order_mark(const LineCursor& cursor) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    Position at = cursor.first();
    if (cursor.rest(at).starts_with(mark)) at.offset += mark.size();
    return at;
}

/// Whether the line at `at` stands behind an empty line, or first.
bool is_behind_blank(const LineCursor& cursor, Position at) {
    const std::uint64_t first = cursor.segment(at).range.begin;
    if (at.offset == first || at == behind_byte_order_mark(cursor)) return true;
    const Position end = before_line_end(cursor, at);
    if (end.offset == first) return true;
    const char c = cursor.segment(at).input[end.offset - 1];
    return c == '\n' || c == '\r';
}

/// The line that begins a message in an mbox file (RFC 4155).
bool is_separator(const LineCursor& cursor, const Line& line) {
    if (!line.text.starts_with("From ") || !is_behind_blank(cursor, line.begin)) return false;
    Line next;
    if (!cursor.peek(line.next, peeked_characters, next)) return false;
    return begins_message_header(next.text) || (has_time(line.text) && !field_name(next.text).empty());
}

bool is_content_field(std::string_view line) {
    return text::starts_with_ignoring_case(line, "content-") && begins_message_header(line);
}

bool is_multipart(const ContentHeader& header) {
    return header.type.starts_with("multipart/");
}

/// A message within a message, whose header follows at once.
bool is_nested_message(const ContentHeader& header) {
    return header.type.starts_with("message/") && header.type != "message/partial" &&
           header.type != "message/delivery-status" && header.encoding == TransferEncoding::identity;
}

/// A message in quoted-printable shows its boundaries, which count when it has been decoded.
bool shows_inner_boundaries(const ContentHeader& header) {
    return is_message_type(header.type) && header.encoding == TransferEncoding::quoted_printable;
}

/// Whether the header at `at` was never put in quoted-printable, which has each of its "=" as "=3D".
bool is_plain_header(const LineCursor& cursor, Position at, const IsStop& is_stop) {
    Line line;
    for (unsigned n = 0; n < most_checked_lines && cursor.peek(at, peeked_characters, line); ++n, at = line.next) {
        if (is_blank_line(line.text) || is_stop(line)) return false;
        const std::string_view text = text::trim(line.text);
        for (std::size_t i = text.find('='); i != text.npos && i + 1 < text.size(); i = text.find('=', i + 1)) {
            const auto code = hex_byte(text.substr(i + 1));
            const bool is_value = text::ends_with_ignoring_case(text.substr(0, i), "boundary") ||
                                  text::ends_with_ignoring_case(text.substr(0, i), "name");
            if (!code || (is_value && *code > ' ' && *code != '=')) return true;
        }
    }
    return false;
}

bool wraps_file(const ContentHeader& header) {
    return header.encoding == TransferEncoding::uuencode || header.encoding == TransferEncoding::binhex ||
           header.encoding == TransferEncoding::yenc || header.type == "application/mac-binhex40" ||
           header.type == "application/x-uuencode" || header.type == "application/x-uuencoded";
}

class Scanner {
  public:
    Scanner(LineCursor& cursor, Texts texts)
        : cursor_(cursor),
          is_stop_([this](const Line& line) { return is_stop(line); }),
          text_{cursor, is_stop_, found_, texts} {}

    Found run();

  private:
    bool is_stop(const Line& line) const;
    bool is_guessed_boundary(const Line& line) const;

    bool take_boundary(const Line& line);
    bool take_guessed_boundary(const Line& line);
    bool take_message(const Line& line);
    bool take_embedded_header(const Line& line);
    void take_text(const Line& line);
    void follow_data(const Line& line);

    void begin_message();
    void open_part(bool in_digest, bool embedded);
    void open_multipart(ContentHeader header);
    void open_leaf(HeaderBlock block, bool embedded);
    void close_as_text(Level& level);
    void close_leaf(Level& level, Position end, bool cut_off);
    void pop_to(std::size_t level, Position end, bool cut_off);
    FoundFile file_of(const Leaf& leaf, Position end) const;
    void name_wrapped(const Leaf& leaf);

    LineCursor& cursor_;
    IsStop is_stop_;
    Found found_;
    TextScan text_;
    EntityStack stack_;
    Position line_begin_;  ///< of the line that is being looked at; behind the last one at the end
};

bool Scanner::is_stop(const Line& line) const {
    if (line.continued) return false;
    if (line.text.starts_with("--")) return stack_.match(line.text).has_value() || is_guessed_boundary(line);
    return is_separator(cursor_, line);
}

/// A line that must be a boundary although none of that name is known: a part's header follows at once.
bool Scanner::is_guessed_boundary(const Line& line) const {
    const std::string_view text = line.text.substr(0, line.text.find_last_not_of(" \t") + 1);
    if (!text.starts_with("--") || text.size() < 3 || text.size() > longest_boundary) return false;
    const std::optional<Leaf>& leaf = stack_.levels.back().leaf;
    if (leaf && leaf->sealed) return false;
    Line next;
    return cursor_.peek(line.next, peeked_characters, next) && is_content_field(next.text);
}

void Scanner::begin_message() {
    text_.label = {};
    text_.in_armor = false;
    text_.in_message = true;
    open_part(false, false);
}

/// Reads the header at the cursor, and those of messages within, up to a body.
void Scanner::open_part(bool in_digest, bool embedded) {
    HeaderBlock block = read_header(cursor_, is_stop_);
    if (in_digest && block.header.type.empty()) block.header.type = "message/rfc822";
    const auto holds_message = [&] {
        const bool plain =
            shows_inner_boundaries(block.header) && is_plain_header(cursor_, cursor_.position(), is_stop_);
        if (plain) block.header.encoding = TransferEncoding::identity;
        return is_nested_message(block.header);
    };
    for (unsigned depth = 0; holds_message() && depth < most_nested_headers; ++depth) {
        block = read_header(cursor_, is_stop_);
    }
    if (const auto label = label_of_subject(block.header.subject)) text_.label = *label;
    if (is_multipart(block.header) && stack_.levels.size() <= deepest_nesting) {
        open_multipart(std::move(block.header));
    } else {
        if (is_multipart(block.header)) {
            found_.problems.push_back({Grade::lost,
                                       "too-deep",
                                       cursor_.position().offset,
                                       {},
                                       "Messages lie in each other deeper than is followed"});
        }
        open_leaf(std::move(block), embedded);
    }
}

void Scanner::open_multipart(ContentHeader header) {
    while (stack_.levels.size() > 1 && stack_.top().closed && !stack_.top().leaf) stack_.levels.pop_back();
    Level level;
    const std::string_view boundary = header.boundary;
    level.boundary = boundary.substr(0, boundary.find_last_not_of(" \t") + 1);
    if (level.boundary.size() > longest_boundary) level.boundary.clear();
    level.header = std::move(header);
    level.begin = cursor_.position();
    level.order = text_.order++;
    level.multipart = true;
    stack_.levels.push_back(std::move(level));
}

void Scanner::open_leaf(HeaderBlock block, bool embedded) {
    ContentHeader& header = block.header;
    Leaf leaf;
    leaf.begin = cursor_.position();
    leaf.order = text_.order++;
    leaf.embedded = embedded;
    leaf.in_header = block.cut || (!block.separated && cursor_.at_end());
    leaf.wraps_file = wraps_file(header);
    leaf.files_before = found_.files.size();
    Line first;
    if (peek_text(text_, leaf.begin, 3, first)) {
        // Said to be Base64, and is uuencoded; or a file's yEnc in a part that names the file.
        const bool uuencoded = header.encoding == TransferEncoding::base64 && sniff_begin(first.text);
        const bool yenc = header.encoding == TransferEncoding::identity && sniff_yenc(first.text);
        leaf.wraps_file = leaf.wraps_file || uuencoded || (yenc && !header.file_name.empty());
    }
    leaf.sealed = (header.type == "message/partial" && !header.partial_id.empty()) || shows_inner_boundaries(header);
    leaf.opaque = leaf.sealed || (!leaf.wraps_file && header.encoding != TransferEncoding::identity);
    leaf.header = std::move(header);
    if (embedded) {
        stack_.levels.emplace_back();
        stack_.top().closed = true;
    }
    stack_.top().leaf = std::move(leaf);
}

FoundFile Scanner::file_of(const Leaf& leaf, Position end) const {
    const ContentHeader& header = leaf.header;
    FoundFile file;
    Attachment& out = file.attachment;
    out.name = header.file_name;
    out.content_type = header.type;
    if (header.encoding == TransferEncoding::base64) out.format = Format::base64;
    if (header.encoding == TransferEncoding::quoted_printable) out.format = Format::quoted_printable;
    out.body = cursor_.ranges(leaf.begin, std::max(leaf.begin, end));
    out.message_text = header.file_name.empty() && (header.type.empty() || header.type.starts_with("text/") ||
                                                    header.type.starts_with("message/") || is_multipart(header));
    out.stated_size = header.size;
    out.stated_md5 = header.md5;
    out.stated_length = header.content_length;
    if (header.type == "message/partial") {
        file.partial_id = header.partial_id;
        file.label.number = header.partial_number;
        file.label.total = header.partial_total;
    }
    return file;
}

/// Gives the file that a part only wraps the name that the part's header has for it.
void Scanner::name_wrapped(const Leaf& leaf) {
    FoundFile& file = found_.files[leaf.files_before];
    const bool names_itself = leaf.header.type == "application/mac-binhex40" && !file.tentative;
    file.tentative = false;
    if (leaf.header.file_name.empty() || names_itself) return;
    file.attachment.name = leaf.header.file_name;
    file.attachment.content_type = leaf.header.type;
}

void Scanner::close_leaf(Level& level, Position end, bool cut_off) {
    if (!level.leaf) return;
    const Leaf leaf = std::move(*level.leaf);
    level.leaf.reset();
    if (leaf.wraps_file && found_.files.size() > leaf.files_before) {
        name_wrapped(leaf);
        return;
    }
    const bool text_behind = leaf.data_end && *leaf.data_end < end && leaf.line_size > 0;
    FoundFile file = file_of(leaf, text_behind ? *leaf.data_end : end);
    if (text_behind) {
        file.attachment.problems.push_back({Grade::repaired,
                                            "text-after-data",
                                            leaf.data_end->offset,
                                            {},
                                            "Text that is no Base64 stands behind the data"});
    }
    if (leaf.embedded && file.attachment.message_text) return;
    file.attachment.cut_off = cut_off && level.multipart;
    if (leaf.wraps_file) {
        file.attachment.problems.push_back(
            {Grade::damaged, "no-data", leaf.begin.offset, {}, "The header promises encoded data, and none is there"});
    }
    if (leaf.in_header && file.attachment.body.empty()) {
        file.attachment.problems.push_back({Grade::lost,
                                            "missing-body",
                                            leaf.begin.offset,
                                            {},
                                            "The text ends in the header; nothing that can be read stands behind it"});
    }
    if (level.guessed) {
        file.attachment.problems.push_back({Grade::repaired,
                                            "wrong-boundary",
                                            leaf.begin.offset,
                                            {},
                                            "The boundary between the parts is not the one that the header names"});
    }
    text_.add(std::move(file), leaf.order);
}

/// A multipart without a part under its own boundary: what there is, is a text, to the line that ends it.
void Scanner::close_as_text(Level& level) {
    Leaf body;
    body.header = std::move(level.header);
    body.header.encoding = TransferEncoding::identity;
    body.begin = level.begin;
    body.order = level.order;
    level.leaf = std::move(body);
    close_leaf(level, level.closed ? level.end : line_begin_, false);
}

void Scanner::pop_to(std::size_t level, Position end, bool cut_off) {
    while (true) {
        Level& top = stack_.top();
        const bool inner = stack_.levels.size() > level + 1;
        close_leaf(top, end, cut_off && !top.closed);
        if (!inner) return;
        if (is_multipart(top.header) && top.parts == 0) close_as_text(top);
        stack_.levels.pop_back();
    }
}

bool Scanner::take_boundary(const Line& line) {
    const std::optional<EntityStack::Match> match = stack_.match(line.text);
    if (!match) return take_guessed_boundary(line);
    pop_to(match->level, before_line_end(cursor_, line.begin), false);
    Level& level = stack_.top();
    text_.in_armor = false;
    level.closed = match->closing;
    level.end = line.begin;
    if (match->closing) return true;
    ++level.parts;
    open_part(level.header.type == "multipart/digest", false);
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

/// The beginning of a message: behind the separator of an mbox file, or where the text so far was no message.
bool Scanner::take_message(const Line& line) {
    if (is_separator(cursor_, line)) {
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

/// A part's header in the middle of running text: of a message that was copied into another, or whose own header is
/// lost. It counts where it says how the lines behind it are encoded.
bool Scanner::take_embedded_header(const Line& line) {
    if (!is_content_field(line.text)) return false;
    cursor_.seek(line.begin);
    const HeaderBlock block = read_header(cursor_, is_stop_);
    const ContentHeader& header = block.header;
    Line first;
    const bool encoded = header.encoding == TransferEncoding::base64 &&
                         peek_text(text_, cursor_.position(), 3, first) && is_base64_line(first.text);
    const bool named = header.encoding == TransferEncoding::quoted_printable && !header.file_name.empty();
    if (stack_.levels.size() > deepest_nesting) return true;
    if (is_multipart(header) && !header.boundary.empty()) {
        open_multipart(header);
    } else if (encoded || named) {
        open_leaf(block, true);
    }
    return true;
}

void Scanner::take_text(const Line& line) {
    if (line.text.empty() || take_message(line) || take_embedded_header(line)) return;
    constexpr std::string_view subject = "subject:";
    auto label = read_part_label(line.text);
    if (!label && text::starts_with_ignoring_case(line.text, subject)) {
        label = label_of_subject(text::trim(line.text.substr(subject.size())));
    }
    if (label) {
        if (label->file.empty()) label->file = text_.label.file;
        text_.label = std::move(*label);
    }
    for (const TextFormat& format : text_formats()) {
        if (format.sniff(line.text) && format.open(text_, line)) return;
    }
}

/// Keeps watch, in a body of Base64, for where the data ends and other text begins. Lines of one length pass unseen.
void Scanner::follow_data(const Line& line) {
    Leaf& leaf = *stack_.top().leaf;
    if (leaf.header.encoding != TransferEncoding::base64 || line.text.size() == leaf.line_size ||
        is_blank_line(line.text)) {
        if (!line.text.empty() && line.text.size() == leaf.line_size) {
            leaf.data_end.reset();
            // Boundaries hold a '-'; the line that begins a message, and most other text, holds a blank.
            cursor_.skip_to_line_with('-', ' ');
        }
        return;
    }
    // Tags may stand where lines ended, and further rows behind them.
    std::size_t tags = 0;
    const std::string_view row = first_row(line.text.substr(pass_tags(line.text, tags)));
    if (row.empty() || is_base64_line(row)) {
        if (leaf.line_size == 0) leaf.line_size = line.text.size();
        return;
    }
    const bool begun = leaf.line_size > 0;
    if (!begun || leaf.data_end || base64_resumes(text_, line.next)) return;
    leaf.data_end = line.begin;
    if (leaf.embedded) pop_to(stack_.levels.size() - 2, line.begin, false);
}

Found Scanner::run() {
    Line line;
    cursor_.seek(behind_byte_order_mark(cursor_));
    while (cursor_.next(line)) {
        if (line.continued) continue;
        line_begin_ = line.begin;
        const bool opaque = stack_.top().leaf && stack_.top().leaf->opaque;
        if (line.text.starts_with('-') && take_boundary(line)) continue;
        if (!opaque) {
            take_text(line);
        } else if (!is_separator(cursor_, line) || !take_message(line)) {
            follow_data(line);
        }
    }
    line_begin_ = cursor_.last();
    pop_to(0, cursor_.last(), true);
    std::stable_sort(found_.files.begin(), found_.files.end(),
                     [](const FoundFile& a, const FoundFile& b) { return a.order < b.order; });
    return std::move(found_);
}

}  // namespace

Found scan(LineCursor& cursor, Texts texts) {
    return Scanner(cursor, texts).run();
}

}  // namespace quill::codec
