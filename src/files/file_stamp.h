#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quill::files {

/// The system's facts about a file at one moment. Two equal stamps mean the same file with the same bytes, unless a
/// program has set the system's clock back in between.
struct FileStamp {
    std::uint64_t device = 0, inode = 0;
    std::uint64_t size = 0;                            ///< bytes
    std::int64_t modified = 0, modified_fraction = 0;  ///< seconds since 1970, and nanoseconds
    std::int64_t recorded = 0, recorded_fraction = 0;  ///< the same for the last change of its inode or its bytes

    bool operator==(const FileStamp&) const = default;

    /// Returns true if nobody has written to the file between the two stamps, unless a program has set its time back.
    /// Its permissions and its other names may have changed.
    bool same_bytes(const FileStamp& other) const {
        return same_file(other) && size == other.size && modified == other.modified &&
               modified_fraction == other.modified_fraction;
    }

    /// Returns true if `other` is a stamp of the same file, even if the file was written to since.
    bool same_file(const FileStamp& other) const { return device == other.device && inode == other.inode; }
};

/// Returns the stamp of the regular file at `path`, without following a link, or nullopt if there is none.
std::optional<FileStamp> stamp_of(const std::string& path);

/// Returns the same for the file that `path` leads to through links.
std::optional<FileStamp> stamp_through_links(const std::string& path);

}  // namespace quill::files
