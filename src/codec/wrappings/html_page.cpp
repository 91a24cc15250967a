#include "codec/input/lines.h"
#include "codec/wrappings/html_tokens.h"
#include "codec/wrappings/line_signs.h"
#include "codec/wrappings/rows.h"
#include "text/ascii.h"

#include <algorithm>
#include <string>

namespace quill::codec {
namespace {

constexpr std::size_t longest_piece = std::size_t{1} << 20;
constexpr std::size_t longest_hidden = std::size_t{1} << 20;

/// Removes tags and escapes from a text, line by line. Outside pages only tags at line ends are removed.
class PageRun {
  public:
    PageRun(std::string_view text, PlainText& out) : text_(text), out_(out) {}

    void run();

  private:
    struct Piece {
        std::size_t begin = 0;
        std::size_t end = 0;   ///< before the tag or the line end
        std::size_t next = 0;  ///< after both
        bool tagged = false;   ///< a tag ended it
    };

    Piece next_piece(std::size_t at) const;
    bool take_as_data(const Piece& piece);
    void take_piece(const Piece& piece);
    std::size_t take_tag(const Tag& tag, std::size_t at);
    std::size_t end_of_hidden(const Tag& tag, std::size_t at);
    void keep(std::size_t begin, std::size_t end);
    void end_line(std::size_t at);

    std::string_view text_;
    PlainText& out_;
    std::size_t unclosed_to_ = 0;  ///< up to here no hidden text has a closing tag
    bool in_page_ = false;
    bool line_empty_ = true;
    bool block_opened_ = false;  ///< the line began with a block's opening tag, and contains nothing else
    bool just_ended_ = false;    ///< a tag ended the line before this place
};

/// Returns the text up to the next line end or <br>; one directly after the other counts as a single line end.
PageRun::Piece PageRun::next_piece(std::size_t at) const {
    const std::string_view line = text_.substr(at, longest_piece);
    const std::size_t length = find_line_end(line, 0);
    Piece out{at, at + length, at + length, false};
    for (std::size_t tag_at = 0; (tag_at = line.substr(0, length).find('<', tag_at)) != std::string_view::npos;
         ++tag_at) {
        const Tag tag = read_tag(line.substr(tag_at));
        if (tag.role != TagRole::line) continue;
        out = {at, at + tag_at, at + tag_at + tag.size, true};
        break;
    }
    const std::string_view blanks = text_.substr(out.next);
    const std::size_t behind = out.tagged ? std::min(blanks.find_first_not_of(" \t"), blanks.size()) : 0;
    const std::string_view end = blanks.substr(behind, 2);
    if (end.starts_with("\r\n")) {
        out.next += behind + 2;
    } else if (end.starts_with('\n') || end.starts_with('\r')) {
        out.next += behind + 1;
    }
    return out;
}

void PageRun::keep(std::size_t begin, std::size_t end) {
    if (begin >= end) return;
    out_.keep(begin, end);
    line_empty_ = false;
    block_opened_ = false;
    just_ended_ = false;
}

void PageRun::end_line(std::size_t at) {
    out_.add("\n", at);
    line_empty_ = true;
    block_opened_ = false;
}

/// Keeps rows of data that are not escaped: they may contain what looks like a tag.
bool PageRun::take_as_data(const Piece& piece) {
    const std::string_view line = text_.substr(piece.begin, piece.end - piece.begin);
    if (in_page_ && (!is_full_row(line) || has_named_escape(line))) return false;
    if (!in_page_ && !is_full_row(line)) {
        const std::size_t tag_at = line.find('<');
        for (std::size_t at = tag_at; at != std::string_view::npos; at = line.find('<', at + 1)) {
            const Tag tag = read_tag(text_.substr(piece.begin + at));
            if (tag.role == TagRole::none || !tag.page) continue;
            in_page_ = true;
            return false;
        }
    }
    keep(piece.begin, piece.end);
    return true;
}

/// Returns the position after the part that the page does not show.
std::size_t PageRun::end_of_hidden(const Tag& tag, std::size_t at) {
    if (at < unclosed_to_) return at + tag.size;
    const std::string_view rest = text_.substr(at + tag.size, longest_hidden);
    const std::string closing = std::string("</").append(tag.name);
    for (std::size_t i = 0; (i = rest.find("</", i)) != std::string_view::npos; ++i) {
        if (!text::starts_with_ignoring_case(rest.substr(i), closing)) continue;
        const Tag end = read_tag(rest.substr(i));
        if (end.closing) return at + tag.size + i + end.size;
    }
    unclosed_to_ = at + tag.size + rest.size();
    return at + tag.size;
}

std::size_t PageRun::take_tag(const Tag& tag, std::size_t at) {
    if (tag.role == TagRole::hidden && !tag.closing) return end_of_hidden(tag, at);
    if (tag.role == TagRole::block) {
        if (!line_empty_ || (tag.closing && block_opened_)) {
            end_line(at);
            just_ended_ = true;
        }
        block_opened_ = !tag.closing;
        if (tag.closing && (text::equal_ignoring_case(tag.name, "html"))) in_page_ = false;
    }
    return at + tag.size;
}

/// Removes the tags and escapes from a piece, and ends its line.
void PageRun::take_piece(const Piece& piece) {
    std::size_t kept = piece.begin;
    std::size_t at = piece.begin;
    while (at < piece.end) {
        at = std::min(text_.substr(0, piece.end).find_first_of("<&", at), piece.end);
        if (at >= piece.end) break;
        if (text_[at] == '<') {
            const Tag tag = read_tag(text_.substr(at));
            if (tag.role == TagRole::none) {
                ++at;
                continue;
            }
            keep(kept, at);
            at = take_tag(tag, at);
        } else {
            const Escape escape = read_escape(text_.substr(at));
            if (escape.size == 0) {
                ++at;
                continue;
            }
            keep(kept, at);
            out_.add(escape.bytes, at);
            line_empty_ = block_opened_ = just_ended_ = false;
            at += escape.size;
        }
        kept = at;
    }
    keep(kept, piece.end);
}

void PageRun::run() {
    for (std::size_t at = 0; at < text_.size() && !out_.stopped();) {
        const Piece piece = next_piece(at);
        const bool ended = piece.next > piece.end;
        if (!take_as_data(piece)) take_piece(piece);
        at = std::max(piece.next, piece.end);
        if (!ended) continue;
        if (piece.tagged) {
            end_line(piece.end);
        } else if (!std::exchange(just_ended_, false) || !line_empty_) {
            out_.keep(piece.end, piece.next);
            line_empty_ = true;
            block_opened_ = false;
        }
    }
}

bool has_tags(std::string_view window) {
    for (std::size_t at = 0; (at = window.find('<', at)) != std::string_view::npos; ++at) {
        const Tag tag = read_tag(window.substr(at));
        if (tag.role == TagRole::line || tag.page) return true;
    }
    return false;
}

}  // namespace

bool detect_html(const Sample& sample) {
    return sample.any(has_tags);
}

void unwrap_html(std::string_view wrapped, PlainText& out) {
    PageRun(wrapped, out).run();
}

}  // namespace quill::codec
