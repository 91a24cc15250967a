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

/// A stretch of an input that is read as if it followed the previous one: a whole input, or a part of a message that
/// was sent in several.
struct Segment {
    std::string_view input;  ///< the whole input
    Range range;             ///< the bytes of it that are used
};

/// A position in a series of segments.
struct Position {
    std::uint32_t segment = 0;
    std::uint64_t offset = 0;  ///< in the segment's input

    auto operator<=>(const Position&) const = default;
};

/// A line as read: its characters, and where it and the next one begin.
struct Line {
    std::string_view text;  ///< without its line end
    Position begin;
    Position end;            ///< after the text, before the line end
    Position next;           ///< where the next line begins
    bool ended = false;      ///< a line end followed it
    bool continued = false;  ///< it continues the line before it, which was longer than `longest_line`
};

/// Longer lines, in bytes, are read in pieces, so that only one piece of the input is in use at a time.
constexpr std::size_t longest_line = std::size_t{1} << 20;

/// Reads text by lines from a series of segments. A line ends at CR LF, LF, CR or CR CR LF, and at the end of its
/// segment. A segment without bytes, other than the first, is an empty line. A byte order mark at the beginning of an
/// input does not belong to its first line.
class LineCursor {
  public:
    /// Called periodically with how far a segment has been read; return false to stop reading.
    using OnMove = std::function<bool(const Segment&, std::uint64_t)>;
    explicit LineCursor(std::vector<Segment> segments, OnMove on_move = {});

    /// Reads the next line; returns false at the end, or if reading was stopped.
    bool next(Line& line);

    /// Reads a line after the position `at` without moving, at most `most` characters of it.
    bool peek(Position at, std::size_t most, Line& line) const;

    /// Moves forward to the beginning of the line that holds the next of the characters `a` and `b`, or to the end of
    /// the segment: a fast way to skip lines that can hold neither.
    void skip_to_line_with(char a, char b);

    /// Returns the bytes from here on, of this segment: `size` of them, or what is left.
    std::string_view look_ahead(std::size_t size) const { return rest(at_).substr(0, size); }

    /// Moves to `offset` of the current segment, across bytes that are known to be lines.
    void pass_to(std::uint64_t offset);

    /// While `mark` is not empty, it is removed from each line, and reading ends before the first line that lacks it. A
    /// line that holds only the mark without its trailing blanks is empty. The fast ways above ignore marks.
    void set_quote(std::string_view mark) { quote_ = mark; }
    bool is_quoted() const { return !quote_.empty(); }

    bool stopped() const { return stopped_; }
    bool at_end() const { return at_ >= last(); }
    Position position() const { return at_; }
    void seek(Position at) { at_ = at; }
    const std::vector<Segment>& segments() const { return segments_; }
    const Segment& segment(Position at) const { return segments_[at.segment]; }

    /// Returns the bytes from `at` to the end of its segment.
    std::string_view rest(Position at) const;

    /// Returns the non-empty ranges between two positions, with the current quotation mark.
    std::vector<Range> ranges(Position begin, Position end) const;

    /// Return the first position and the one after all bytes.
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
