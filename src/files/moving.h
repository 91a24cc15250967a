#pragma once

#include "text/result.h"

#include <cstdint>
#include <functional>
#include <string>

/// Moving and copying files without replacing any.
namespace quill::files {

/// Called with the bytes copied so far, at least every 16 MiB; returns false to cancel. May be empty.
using CopyWatch = std::function<bool(std::uint64_t done)>;

/// Copies the regular file at `from` to `to`, or to the next free name of its row, and returns the path that it got.
/// The copy keeps who may use the file and its time. Makes the directories above `to`. Fails with `io`, leaving no
/// copy, where another program writes to the file meanwhile.
Result<std::string> copy_to_free_name(const std::string& from, const std::string& to, const CopyWatch& watch = {});

/// Moves the file at `from` in the same way: by a rename, or between file systems by a copy. The original is deleted
/// only where all of it was copied and nobody has written to it since; where it can't be deleted, the copy goes again.
Result<std::string> move_to_free_name(const std::string& from, const std::string& to, const CopyWatch& watch = {});

}  // namespace quill::files
