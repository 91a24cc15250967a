#pragma once

#include "text/result.h"

#include <cstdint>
#include <functional>
#include <string>

/// Moving and copying files without replacing any.
namespace quill::files {

/// Is called with the bytes copied so far, at least every 16 MiB; returns false to cancel. May be empty.
using CopyWatch = std::function<bool(std::uint64_t done)>;

/// Copies the regular file at `from` to `to`, or to the next free name of its series, and returns the path that it got.
/// The copy keeps the access rights and the modification time. Makes the directories above `to`. Fails with `io`,
/// leaving no copy, if another program writes to the file meanwhile.
Result<std::string> copy_to_free_name(const std::string& from, const std::string& to, const CopyWatch& watch = {});

/// Moves the file at `from` in the same way: by a rename, or between file systems by a copy. Deletes the original only
/// if all of it was copied and nobody has written to it since; removes the copy if the original can't be deleted.
Result<std::string> move_to_free_name(const std::string& from, const std::string& to, const CopyWatch& watch = {});

}  // namespace quill::files
