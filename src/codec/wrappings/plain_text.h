#pragma once

#include "codec/wrappings/offset_map.h"
#include "files/mapped_file.h"
#include "files/temporary_file.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::codec {

/// Is called periodically with the place reached in the wrapped text; returns false to cancel.
using OnUnwrapped = std::function<bool(std::uint64_t offset)>;

/// The storage of the plain texts of a run and their maps: two unnamed files, made when needed.
class Spool {
  public:
    /// The most bytes of all plain texts of a run.
    static constexpr std::uint64_t largest = std::uint64_t{8} << 30U;

    /// Returns the beginning of the next text, or the next map. Fails with the system's reason.
    Result<std::uint64_t> begin(std::optional<files::TemporaryFile>& file);

    /// Writes `bytes`; returns false if there is no room.
    bool write(std::optional<files::TemporaryFile>& file, std::string_view bytes);

    std::optional<files::TemporaryFile> texts;
    std::optional<files::TemporaryFile> maps;
};

/// An unwrapped text and its mapping back.
struct Unwrapped {
    files::MappedFile text;
    OffsetMap map;
};

/// Receives a plain text in order, as stretches: ranges of the wrapped text, and new bytes. Writes nothing as long as
/// all of it is the wrapped text itself. Uses some hundred KiB of memory.
class PlainText {
  public:
    /// REQUIRES: `wrapped` and `spool` outlive it.
    PlainText(const files::MappedFile& wrapped, Spool& spool, OnUnwrapped on_unwrapped = {})
        : wrapped_(wrapped), spool_(spool), on_unwrapped_(std::move(on_unwrapped)) {}

    /// Appends the bytes [begin, end) of the wrapped text.
    void keep(std::uint64_t begin, std::uint64_t end);

    /// Appends `part`, a view into the wrapped text.
    void keep(std::string_view part);

    /// Appends new bytes that replace those at `at` in the wrapped text.
    void add(std::string_view bytes, std::uint64_t at, Pace pace = Pace::none);

    /// Marks later bytes as guessed, or not: other bytes would fit the wrapped text as well.
    void set_guessed(bool guessed) { guessed_ = guessed; }

    std::string_view wrapped() const { return wrapped_.bytes(); }
    std::uint64_t size() const { return size_; }

    /// Returns true after a write failure or a cancellation: the rest of the text need not be appended.
    bool stopped() const { return failed_ || cancelled_; }
    bool cancelled() const { return cancelled_; }

    /// Ends the text. Absent if it is the wrapped text itself, or if it could not be written.
    std::optional<Unwrapped> finish();

  private:
    void begin_stretch(std::uint64_t wrapped, Pace pace);
    void flush();
    void flush_text();
    void go_on_to(std::uint64_t offset);

    const files::MappedFile& wrapped_;
    Spool& spool_;
    OnUnwrapped on_unwrapped_;
    std::string text_;                ///< not yet written
    std::vector<Stretch> stretches_;  ///< not yet written
    std::uint64_t kept_begin_ = 0;    ///< of the range of the wrapped text at the end of the text
    std::uint64_t kept_end_ = 0;
    bool kept_guessed_ = false;
    std::uint64_t size_ = 0;
    std::uint64_t count_ = 0;
    Stretch last_;
    std::uint64_t text_begin_ = 0;  ///< in the spool
    std::uint64_t map_begin_ = 0;
    std::uint64_t reported_ = 0;
    bool guessed_ = false;
    bool begun_ = false;
    bool failed_ = false;
    bool cancelled_ = false;
};

}  // namespace quill::codec
