#pragma once

#include "files/atomic_file.h"
#include "pics/album.h"
#include "text/result.h"

#include <cstdint>
#include <functional>
#include <string>

namespace quill::pics {

/// Is called with the copied bytes; returns false to stop.
using Watch = std::function<bool(std::uint64_t done)>;

/// Writes the picture of `entry` to a new file. Returns its path, or that of an equal file: `find_copy`, if set, is
/// asked for one when the bytes are complete, and returns an empty path to request a new file. A taken name gets a
/// number. Fails with the system's reason, `cancelled` if the watch returns false, or `bad_input` if the album has no
/// bytes of the picture.
struct Unpacked {
    std::string path;
    bool already_there = false;
};
using FindCopy = std::function<std::string(const files::AtomicFile& written)>;
Result<Unpacked> unpack_picture(const Album& album, const Entry& entry, const std::string& path,
                                const Watch& watch = {}, const FindCopy& find_copy = {},
                                files::LastNumbers* last_numbers = nullptr);

/// Writes the thumbnail of `entry` to a new file at `path`; a taken name gets a number. Returns its path. Fails in the
/// same way.
Result<std::string> unpack_thumbnail(const Album& album, const Entry& entry, const std::string& path);

}  // namespace quill::pics
