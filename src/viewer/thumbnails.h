#pragma once

#include "platform/pictures.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quill::viewer {

/// The thumbnails of a list of files. Requests only visible ones and their neighbours, and drops requests for those out
/// of sight. Keeps the most recently used, up to a bound on their bytes.
class Thumbnails {
  public:
    /// Thumbnails of the temporary files below `passing` are not put into the user's cache.
    Thumbnails(platform::Pictures& pictures, std::string passing) : pictures_(pictures), passing_(std::move(passing)) {}
    ~Thumbnails();
    Thumbnails(const Thumbnails&) = delete;
    Thumbnails& operator=(const Thumbnails&) = delete;

    /// Requests the visible files, in order, and then those that may be visible next. Drops all other requests.
    void look_at(const std::vector<std::string>& visible, const std::vector<std::string>& nearby);

    /// Returns the picture of the file at `path`; nullptr while there is none yet. One that failed has no pixels and a
    /// reason.
    const platform::Picture* find(const std::string& path) const;

    /// Forgets a file that has changed or was deleted.
    void forget(const std::string& path);

    /// Sets the longest side of thumbnails, in pixels: 128 or 256. Forgets those of another size.
    void set_side(int side);

    /// Runs when a picture has arrived.
    std::function<void(const std::string& path)> changed;

    std::size_t kept_bytes() const { return bytes_; }
    static constexpr std::size_t most_bytes = std::size_t{48} << 20U;

  private:
    struct Kept {
        platform::Picture picture;
        std::list<std::string>::iterator use;
    };

    void ask(const std::string& path, platform::PicturePriority priority);
    void take(const std::string& path, const platform::Picture& picture);
    void touch(Kept& kept);
    void drop_oldest();

    platform::Pictures& pictures_;
    std::string passing_;
    int side_ = 128;
    std::size_t bytes_ = 0;
    std::list<std::string> used_;  ///< the most recently used at the front
    std::unordered_map<std::string, Kept> kept_;
    std::map<std::string, platform::Pictures::Ticket> waiting_;
};

}  // namespace quill::viewer
