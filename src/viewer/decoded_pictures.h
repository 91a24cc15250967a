#pragma once

#include "files/file_stamp.h"
#include "platform/pictures.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quill::viewer {

/// Pictures at their natural size that are decoded ahead: the neighbours of the visible one. They share their pixels
/// with the windows that show them.
class DecodedPictures {
  public:
    using Ready = platform::Pictures::Ready;

    explicit DecodedPictures(platform::Pictures& pictures) : pictures_(pictures) {}
    ~DecodedPictures();
    DecodedPictures(const DecodedPictures&) = delete;
    DecodedPictures& operator=(const DecodedPictures&) = delete;

    /// Decodes `paths` when nothing more urgent is waiting. Drops pictures and requests of other files. Pictures that
    /// would take the total beyond `most_bytes` are not kept.
    void decode_ahead(const std::vector<std::string>& paths);

    /// Keeps a visible picture: going back to it needs no decoding.
    void keep(const std::string& path, const platform::Picture& picture) { take(path, picture); }

    /// Returns the picture of the file at `path` if it is decoded and the file is unchanged; else nullptr.
    const platform::Picture* find(const std::string& path) const;

    static constexpr std::size_t most_bytes = std::size_t{192} << 20U;

  private:
    struct Kept {
        platform::Picture picture;
        std::optional<files::FileStamp> stamp;  ///< of the file when its picture was decoded
    };

    void take(const std::string& path, const platform::Picture& picture);

    platform::Pictures& pictures_;
    std::map<std::string, Kept> kept_;
    std::map<std::string, platform::Pictures::Ticket> waiting_;
};

}  // namespace quill::viewer
