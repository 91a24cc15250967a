#pragma once

#include "codec/attachment.h"
#include "codec/wrappings/wrappings.h"
#include "files/mapped_file.h"
#include "text/result.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quill::codec {

/// A place in the user's file.
enum class FileOffset : std::uint64_t {};

/// The texts of a run, by number: the user's files first, then the unwrapped ones.
class Sources {
  public:
    /// Opens the files `paths`. Fails with the first error, the path in its text.
    static Result<Sources> open(std::span<const std::string> paths);

    /// Removes the wrappings of the text `source`, one after another, and returns the number of the plain text:
    /// `source` itself if it is not wrapped.
    std::uint32_t unwrap(std::uint32_t source, const OnUnwrapped& on_unwrapped);

    /// Returns true if there was no room for a plain text: its wrappings are still on.
    bool out_of_room() const { return out_of_room_; }

    /// Adds a text unwrapped from `parent`, and returns its number.
    std::uint32_t add(Unwrapped unwrapped, std::uint32_t parent, const Wrapping& wrapping);

    /// Begins a plain text unwrapped from `parent`.
    PlainText begin_plain(std::uint32_t parent, OnUnwrapped on_unwrapped = {}) const;

    /// Returns the user's file that the text comes from.
    std::uint32_t file_of(std::uint32_t source) const;

    /// Returns the place in the user's file that a place in a text comes from.
    FileOffset file_offset(std::uint32_t source, std::uint64_t at) const;

    /// Return the number of the user's files, and of all texts.
    std::uint32_t files() const { return files_; }
    std::size_t size() const { return texts_.size(); }

    /// Returns the bytes of all texts, by number.
    std::span<const std::string_view> bytes() const { return bytes_; }

    /// Returns the paths of the user's files that the texts come from, by number.
    std::span<const std::string> paths() const { return paths_; }

    const files::MappedFile& text(std::uint32_t source) const { return texts_[source].bytes; }

    /// Applies the wrappings to `attachment`: each around its data, or in it, becomes a repaired problem, and a guess a
    /// damaged one. If a wrapping was found inside a text, restores that text from the user's file.
    void settle(Attachment& attachment) const;

    /// Converts the places of `problems`, which are of an attachment with the given `body`, into those of the user's
    /// file.
    void map_problems(std::span<const Range> body, std::vector<Problem>& problems) const;

  private:
    struct Text {
        files::MappedFile bytes;
        std::uint32_t parent = 0;  ///< the text that it was unwrapped from; itself for a user's file
        const Wrapping* wrapping = nullptr;
        OffsetMap map = {};
    };

    bool lies_within(const Attachment& attachment) const;
    Range range_before(const Range& range) const;
    std::uint64_t end_before(const Range& body) const;
    void step_back(Attachment& attachment) const;

    std::uint32_t files_ = 0;
    bool out_of_room_ = false;
    std::vector<Text> texts_;
    std::vector<std::string_view> bytes_;
    std::vector<std::string> paths_;
    std::unique_ptr<Spool> spool_ = std::make_unique<Spool>();
};

}  // namespace quill::codec
