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

/// Pictures at their natural size that are decoded ahead: the neighbours of the one that the user looks at. They share
/// their pixels with the windows that show them.
class DecodedPictures {
  public:
    using Ready = platform::Pictures::Ready;

    explicit DecodedPictures(platform::Pictures& pictures) : pictures_(pictures) {}
    ~DecodedPictures();
    DecodedPictures(const DecodedPictures&) = delete;
    DecodedPictures& operator=(const DecodedPictures&) = delete;

    /// Has `paths` decoded when nothing more urgent waits. What is kept or asked for of others is dropped. Those that
    /// would take the total beyond `most_bytes` are not kept.
    void decode_ahead(const std::vector<std::string>& paths);

    /// Keeps a picture that is shown now: going back to it takes no decoding.
    void keep(const std::string& path, const platform::Picture& picture) { take(path, picture); }

    /// The picture of the file at `path` where it is decoded already and the file is as it was; nullptr else.
    const platform::Picture* find(const std::string& path) const;

    static constexpr std::size_t most_bytes = std::size_t{192} << 20U;

  private:
    struct Kept {
        platform::Picture picture;
        std::optional<files::FileStamp> stamp;  ///< of the file when its picture came
    };

    void take(const std::string& path, const platform::Picture& picture);

    platform::Pictures& pictures_;
    std::map<std::string, Kept> kept_;
    std::map<std::string, platform::Pictures::Ticket> waiting_;
};

}  // namespace quill::viewer
