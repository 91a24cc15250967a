#include "codec/input/line_cursor.h"

#include "codec/input/lines.h"

#include <algorithm>
#include <utility>

namespace quill::codec {
namespace {

constexpr std::size_t skipped_at_once = std::size_t{128} << 10;  // fits the nearest caches for the second search
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";     // UTF-8
constexpr std::uint64_t tell_every = std::uint64_t{1} << 20;

/// Returns the size in bytes of the line end at `at`.
std::size_t line_end_size(std::string_view bytes, std::size_t at) {
    const std::string_view end = bytes.substr(at, 3);
    if (end.starts_with("\r\n")) return 2;
    return end == "\r\r\n" ? 3 : 1;
}

}  // namespace

LineCursor::LineCursor(std::vector<Segment> segments, OnMove on_move)
    : segments_(std::move(segments)), on_move_(std::move(on_move)) {
    for (Segment& segment : segments_) {
        const bool marked = segment.range.begin == 0 && segment.input.starts_with(byte_order_mark) &&
                            segment.range.end >= byte_order_mark.size();
        if (marked) segment.range.begin = byte_order_mark.size();
    }
    at_ = first();
}

Position LineCursor::first() const {
    return {0, segments_.empty() ? 0 : segments_.front().range.begin};
}

Position LineCursor::last() const {
    if (segments_.empty()) return {};
    return {static_cast<std::uint32_t>(segments_.size() - 1), segments_.back().range.end};
}

std::string_view LineCursor::rest(Position at) const {
    if (at.segment >= segments_.size()) return {};
    const Segment& segment = segments_[at.segment];
    return segment.input.substr(at.offset, segment.range.end - at.offset);
}

bool LineCursor::read_line(Position at, std::size_t most, Line& line) const {
    if (at.segment < segments_.size() && at.offset >= segments_[at.segment].range.end) {
        if (++at.segment < segments_.size()) at.offset = segments_[at.segment].range.begin;
    }
    if (at.segment >= segments_.size()) return false;
    const std::string_view rest_of_segment = rest(at);
    const std::string_view seen = rest_of_segment.substr(0, std::min(most, longest_line));
    const std::size_t length = find_line_end(seen, 0);
    line.text = seen.substr(0, length);
    line.ended = length < seen.size();
    const Segment& segment = segments_[at.segment];
    const char before = at.offset > segment.range.begin ? segment.input[at.offset - 1] : '\n';
    line.continued = before != '\n' && before != '\r';
    line.begin = at;
    line.end = {at.segment, at.offset + length};
    line.next = line.end;
    if (length < seen.size()) line.next.offset += line_end_size(rest_of_segment, length);
    return quote_.empty() || unquote(line);
}

bool LineCursor::unquote(Line& line) const {
    if (line.text.starts_with(quote_)) {
        line.text.remove_prefix(quote_.size());
        return true;
    }
    const std::string_view mark = std::string_view(quote_).substr(0, quote_.find_last_not_of(" \t") + 1);
    if (!line.text.starts_with(mark) || line.text.find_first_not_of(" \t", mark.size()) != line.text.npos) return false;
    line.text = {};
    return true;
}

bool LineCursor::next(Line& line) {
    if (stopped_ || !read_line(at_, std::string_view::npos, line)) return false;
    move_to(line.next);
    return true;
}

void LineCursor::move_to(Position to) {
    const bool other_source = segments_[to.segment].range.source != segments_[at_.segment].range.source;
    if (on_move_ && (other_source || to.offset - told_ >= tell_every)) {
        told_ = to.offset;
        if (!on_move_(segments_[to.segment], told_)) stopped_ = true;
    }
    at_ = to;
}

void LineCursor::pass_to(std::uint64_t offset) {
    move_to({at_.segment, offset});
}

void LineCursor::skip_to_line_with(char a, char b) {
    while (!stopped_) {
        const std::string_view window = look_ahead(skipped_at_once);
        const std::size_t first_a = window.find(a);
        const std::size_t found = std::min(window.substr(0, first_a).find(b), first_a);
        if (window.empty()) return;
        if (found != std::string_view::npos) {
            const std::size_t line_end = window.substr(0, found).find_last_of("\r\n");
            if (line_end != std::string_view::npos) pass_to(at_.offset + line_end + 1);
            return;
        }
        // Keeps the window's last line if there is more than one: the character searched for may follow in it.
        const bool at_segment_end = window.size() == rest(at_).size();
        const std::size_t last = at_segment_end ? window.size() : window.find_last_of("\r\n") + 1;
        pass_to(at_.offset + (last == 0 ? window.size() : last));
    }
}

bool LineCursor::peek(Position at, std::size_t most, Line& line) const {
    return read_line(at, most, line);
}

std::vector<Range> LineCursor::ranges(Position begin, Position end) const {
    std::vector<Range> out;
    for (Position at = begin; at < end;) {
        const Segment& segment = segments_[at.segment];
        const std::uint64_t stop = at.segment == end.segment ? end.offset : segment.range.end;
        const auto quote = static_cast<std::uint32_t>(quote_.size());
        if (at.offset < stop) out.push_back({at.offset, stop, segment.range.source, quote});
        if (++at.segment >= segments_.size()) break;
        at.offset = segments_[at.segment].range.begin;
    }
    return out;
}

}  // namespace quill::codec
