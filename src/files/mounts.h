#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quill::files {

/// Returns the directories that a person would regard as drives: the root, and the mount points of media and of further
/// disks (below /media, /run/media, /mnt and /home), from text in the form of proc(5)'s `mounts` file. The root comes
/// first, the rest are sorted.
std::vector<std::string> drives_among(std::string_view mounts);

/// Returns the current drives of this machine.
std::vector<std::string> drives();

/// Returns the longest of `drives` that contains or equals `path`.
std::string drive_of(std::string_view path, const std::vector<std::string>& drives);

}  // namespace quill::files
