#pragma once

#include "codec/attachment.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::codec {

/// A stretch of an input that is read as though it followed the one before it: an input as a whole, or a part of a
/// message that came in several.
struct Segment {
    std::string_view input;  ///< the whole input
    Range range;             ///< the bytes of it that are meant
};

/// A place in a row of segments.
struct Position {
    std::uint32_t segment = 0;
    std::uint64_t offset = 0;  ///< in the segment's input

    auto operator<=>(const Position&) const = default;
};

/// A line as read: its characters, and where it and the next one begin.
struct Line {
    std::string_view text;  ///< without its line end
    Position begin;
    Position end;            ///< behind the text, before the line end
    Position next;           ///< where the next line begins
    bool ended = false;      ///< a line end stood behind it
    bool continued = false;  ///< it goes on with the line before it, which was longer than `longest_line`
};

/// Lines longer than this, in bytes, are read in pieces, so that no more than a piece of the input is in use at a time.
constexpr std::size_t longest_line = std::size_t{1} << 20;

/// Reads text by lines from a row of segments. A line ends at CR LF, LF, CR or CR CR LF, and at the end of its segment.
/// A segment without bytes, other than the first, is an empty line. A byte order mark at the beginning of an input is
/// no part of its first line.
class LineCursor {
  public:
    /// `on_move` is told now and then up to where a segment has been read; where it returns false the reading ends.
    using OnMove = std::function<bool(const Segment&, std::uint64_t)>;
    explicit LineCursor(std::vector<Segment> segments, OnMove on_move = {});

    /// Reads the next line; false at the end, or where the reading was stopped.
    bool next(Line& line);

    /// Reads a line ahead of the position `at` without moving, and at most `most` characters of it.
    bool peek(Position at, std::size_t most, Line& line) const;

    /// Moves on, but not back, to the beginning of the line that holds the first of the characters `a` and `b` from
    /// here on, or to the end of the segment: a fast way over lines that can hold neither.
    void skip_to_line_with(char a, char b);

    /// Returns the bytes from here on, of this segment: `size` of them, or what is left.
    std::string_view look_ahead(std::size_t size) const { return rest(at_).substr(0, size); }

    /// Moves to `offset` of the current segment, in what is known to be lines.
    void pass_to(std::uint64_t offset);

    /// While `mark` is not empty, lines are read without it, and all ends before the first one that it does not stand
    /// before. A line that holds only the mark, blanks at its end lost, is empty. The fast ways above know of no marks.
    void set_quote(std::string_view mark) { quote_ = mark; }
    bool is_quoted() const { return !quote_.empty(); }

    bool stopped() const { return stopped_; }
    bool at_end() const { return at_ >= last(); }
    Position position() const { return at_; }
    void seek(Position at) { at_ = at; }
    const std::vector<Segment>& segments() const { return segments_; }
    const Segment& segment(Position at) const { return segments_[at.segment]; }

    /// The bytes from `at` to the end of its segment.
    std::string_view rest(Position at) const;

    /// The ranges between two positions, empty ones left out, quoted as the lines are at the moment.
    std::vector<Range> ranges(Position begin, Position end) const;

    /// The first position, and the one behind everything.
    Position first() const;
    Position last() const;

  private:
    bool read_line(Position at, std::size_t most, Line& line) const;
    bool unquote(Line& line) const;
    void move_to(Position to);

    std::vector<Segment> segments_;
    std::string quote_;
    OnMove on_move_;
    Position at_;
    std::uint64_t told_ = 0;
    bool stopped_ = false;
};

}  // namespace quill::codec
