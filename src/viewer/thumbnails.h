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

/// The thumbnails of a list of files. Only those that somebody looks at, and their neighbours, are asked for; requests
/// for what has gone out of sight are dropped. Those seen last are kept, up to a bound on their bytes.
class Thumbnails {
  public:
    /// Thumbnails of the files below `passing`, which do not stay, are not put into the user's cache.
    Thumbnails(platform::Pictures& pictures, std::string passing) : pictures_(pictures), passing_(std::move(passing)) {}
    ~Thumbnails();
    Thumbnails(const Thumbnails&) = delete;
    Thumbnails& operator=(const Thumbnails&) = delete;

    /// The files looked at now, from the first one seen, and those that may be seen next. All other requests are
    /// dropped.
    void look_at(const std::vector<std::string>& visible, const std::vector<std::string>& nearby);

    /// The picture of the file at `path`; nullptr while there is none yet. One that failed has no pixels and a reason.
    const platform::Picture* find(const std::string& path) const;

    /// Forgets what is known of a file: it has changed, or is gone.
    void forget(const std::string& path);

    /// The longest side of the thumbnails asked for from now on, in pixels: 128 or 256. Those of another size are
    /// forgotten.
    void set_side(int side);

    /// Runs when a picture has come.
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
    std::list<std::string> used_;  ///< the last one used at the front
    std::unordered_map<std::string, Kept> kept_;
    std::map<std::string, platform::Pictures::Ticket> waiting_;
};

}  // namespace quill::viewer
