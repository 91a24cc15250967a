#pragma once

#include "files/mapping.h"

#include <cstddef>
#include <cstdint>

namespace quill::codec {

/// A place in an unwrapped text.
enum class PlainOffset : std::uint64_t {};

/// A place in the wrapped text.
enum class WrappedOffset : std::uint64_t {};

/// The step in the wrapped text for each byte of the plain one.
enum class Pace : std::uint32_t {
    none,      ///< new bytes, which all replace one stretch of the wrapped text
    same,      ///< the same bytes
    two_bytes  ///< ASCII in UTF-16
};

/// A stretch of plain text, up to the next one, and its origin.
struct Stretch {
    std::uint64_t plain = 0;    ///< its beginning in the plain text
    std::uint64_t wrapped = 0;  ///< its beginning in the wrapped text
    Pace pace = Pace::same;
    std::uint32_t guessed = 0;  ///< 1 if the wrapped text could also mean other bytes
};

/// The mapping from a plain text back to the wrapped one. Its stretches are in a file, as a long text has many.
class OffsetMap {
  public:
    OffsetMap() = default;

    /// `stretches` contains `Stretch`es in the order of both offsets, the first at 0; they cover `size` bytes.
    OffsetMap(files::Mapping stretches, std::uint64_t size);

    /// Returns the origin of the byte at `at`; for the end of the text, the end of its last stretch.
    WrappedOffset origin_of(PlainOffset at) const;

    /// Returns true if the bytes [begin, end) are contiguous and unchanged in the wrapped text.
    bool is_unchanged(PlainOffset begin, PlainOffset end) const;

    /// Returns true if some of the bytes [begin, end) are guessed.
    bool is_guessed(PlainOffset begin, PlainOffset end) const;

    std::size_t count() const { return count_; }
    Stretch stretch(std::size_t index) const;

  private:
    std::size_t index_of(PlainOffset at) const;
    std::uint64_t end_of(std::size_t index) const;

    files::Mapping stretches_;
    std::size_t count_ = 0;
    std::uint64_t size_ = 0;
};

}  // namespace quill::codec
