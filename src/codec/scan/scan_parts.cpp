#include "codec/recovery/part_label.h"
#include "codec/recovery/part_signs.h"
#include "codec/scan/scan_run.h"
#include "codec/scan/scanner.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace quill::codec {
namespace {

constexpr unsigned most_nested_headers = 10'000;

}  // namespace

void Scanner::begin_message() {
    text_.label = {};
    text_.in_armor = false;
    text_.in_message = true;
    message_end_ = {};
    open_part(false, false);
}

/// Reads the header at the cursor, and those of messages inside, up to a body.
void Scanner::open_part(bool in_digest, bool embedded) {
    text_.base64_open = false;
    HeaderBlock block = read_header(cursor_, is_stop_);
    if (stack_.levels.size() == 1 && message_end_ == Position{}) keep_stated_length(block);
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
        if (is_multipart(block.header)) report_too_deep();
        open_leaf(std::move(block), embedded);
    }
}

/// Reports excessive nesting, once.
void Scanner::report_too_deep() {
    if (std::exchange(too_deep_, true)) return;
    found_.problems.push_back({ProblemKind::too_deep, cursor_.position().offset});
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
        // Declared as Base64, but uuencoded; or a file's yEnc in a part that names the file.
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
    if (header.encoding == TransferEncoding::base64) {
        out.format = Format::base64;
        file.label = text_.label;  // of the subject: its file may lie in several posts
    }
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

/// Gives a wrapped file the name in the header of the part that wraps it.
void Scanner::name_wrapped(const Leaf& leaf) {
    FoundFile& file = found_.files[leaf.files_before];
    const bool names_itself = leaf.header.type == "application/mac-binhex40" && !file.tentative && !file.name_guessed;
    file.tentative = false;
    if (leaf.header.file_name.empty() || names_itself) return;
    file.attachment.name = leaf.header.file_name;
    file.attachment.content_type = leaf.header.type;
    for (std::size_t i = leaf.files_before + 1; i < found_.files.size(); ++i) {
        FoundFile& fork = found_.files[i];
        if (fork.name_guessed && fork.attachment.resource_fork) fork.attachment.name = leaf.header.file_name + ".rsrc";
    }
}

/// Reports text after the data of a Base64 body, and whether it may have replaced the last rows.
void Scanner::report_text_behind(const Leaf& leaf, Attachment& attachment) const {
    const Position at = *leaf.data_end;
    if (ends_base64(cursor_, at, leaf.line_size)) {
        attachment.problems.push_back({ProblemKind::text_after_data, at.offset});
    } else {
        attachment.problems.push_back({ProblemKind::doubtful_end, at.offset});
    }
}

/// Returns true for a part with a file in it whose boundary follows the empty line after the header at once. A body
/// without bytes has a line of its own (RFC 2046 5.1.1).
bool lacks_body(const Attachment& attachment, const Leaf& leaf, Position end) {
    return attachment.before_boundary && !attachment.message_text && attachment.format != Format::identity &&
           end < leaf.begin;
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
    if (text_behind) report_text_behind(leaf, file.attachment);
    if (leaf.embedded && file.attachment.message_text) return;
    file.attachment.cut_off = cut_off && level.multipart;
    file.attachment.before_boundary = !cut_off && level.multipart;
    if (leaf.wraps_file) {
        file.attachment.problems.push_back({ProblemKind::no_data, leaf.begin.offset});
    }
    if ((leaf.in_header && file.attachment.body.empty()) || lacks_body(file.attachment, leaf, end)) {
        file.attachment.problems.push_back({ProblemKind::missing_body, leaf.begin.offset});
    }
    if (level.guessed) {
        file.attachment.problems.push_back({ProblemKind::wrong_boundary, leaf.begin.offset});
    }
    text_.add(std::move(file), leaf.order);
}

/// Closes a multipart without a part under its own boundary: its contents are a text, up to the line that ends it.
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

}  // namespace quill::codec
