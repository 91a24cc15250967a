#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quill::files {

/// The directories that a person would take for drives: the root, and the mount points of media and of further disks
/// (below /media, /run/media, /mnt and /home), in the form of proc(5)'s `mounts` file. The root stands first, the rest
/// sorted.
std::vector<std::string> drives_among(std::string_view mounts);

/// Those of this machine, as they are now.
std::vector<std::string> drives();

/// The longest of `drives` that `path` lies below or is.
std::string drive_of(std::string_view path, const std::vector<std::string>& drives);

}  // namespace quill::files
