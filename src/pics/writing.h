#pragma once

#include "files/atomic_file.h"
#include "pics/format.h"
#include "pics/unpacking.h"
#include "text/result.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace quill::pics {

/// A file that goes into an album.
struct Item {
    std::string path;
    std::string name;        ///< in the album; a bare file name
    std::uint64_t size = 0;  ///< set by `measure`
};

/// Returns the 14,938 bytes of an item's thumbnail, a BMP file. A longer one is cut, a shorter one padded with zeros.
using MakeThumbnail = std::function<std::string(const Item& item)>;

/// An album to write.
struct AlbumRequest {
    std::string path;
    std::vector<Item> items;  ///< in the order of the album; see measure
    Form form = Form::plain;
    MakeThumbnail thumbnail = {};                                ///< called for each item of an album with thumbnails
    files::OnCollision on_collision = files::OnCollision::fail;  ///< a file of at most one byte counts as free
    Watch watch = {};                                            ///< called with the written bytes of the album
};

/// The reason for a failure.
struct WriteFailure {
    std::optional<std::size_t> item = {};  ///< the unreadable item; nullopt: the album itself failed
    Error error = {};
};

/// Sets the sizes of the items; returns the items that are not readable files, with the system's reason.
std::vector<WriteFailure> measure(std::vector<Item>& items);

/// Returns the size of the album in bytes.
std::uint64_t album_size(const AlbumRequest& request);

/// Writes an album as a new file that appears when it is complete; returns its path. Fails if a source changes its size
/// meanwhile, or if the watch returns false (`cancelled`).
std::variant<std::string, WriteFailure> write_album(const AlbumRequest& request);

}  // namespace quill::pics
