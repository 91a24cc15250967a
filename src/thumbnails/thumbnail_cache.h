#pragma once

#include "platform/pictures.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quill::thumbnails {

/// Returns the directory of the user's thumbnails, below $XDG_CACHE_HOME or ~/.cache; empty if there is neither.
std::string user_thumbnails();

/// Returns the address of a file as file managers write it: "file:///home/me/a%20b.png".
std::string address_of(const std::string& path);

/// The thumbnails that all programs share, as the freedesktop.org "Thumbnail Managing Standard" defines them: PNG files
/// of at most 128 x 128 and 256 x 256 pixels, and marks of files that can't be read. Copies refer to the same cache;
/// its functions may run in any thread.
class ThumbnailCache {
  public:
    /// Opens the cache; an empty `directory` stores nothing.
    explicit ThumbnailCache(std::string directory) : directory_(std::move(directory)) {}

    /// The file of a thumbnail. A thumbnail with another time is of an older file.
    struct Subject {
        std::string path;           ///< absolute
        std::int64_t modified = 0;  ///< seconds since 1970
        int side = 0;               ///< of the thumbnail, 128 or 256 pixels
    };

    /// The cached data of a file.
    struct Kept {
        std::string thumbnail = {};           ///< path of a PNG file that any program may have written; or
        std::string reason = {};              ///< why there is none: the file can't be read
        platform::PictureSize original = {};  ///< of the picture; {0, 0} if unknown
    };

    /// Returns the cached data of the current version of a file.
    std::optional<Kept> find(const Subject& subject) const;

    /// Stores the thumbnail of a whole picture, or the mark of one that can't be read. Does nothing for others, for
    /// other sizes, for files of the cache itself, and if the directory can't be written to.
    void keep(const Subject& subject, const platform::Picture& picture) const;

  private:
    std::string file_of(const Subject& subject, const char* folder) const;

    std::string directory_;
};

}  // namespace quill::thumbnails
