#pragma once

#include "shell/session.h"

#include <string>
#include <string_view>

namespace quill::viewer {

/// Deletes the files in the directory for unpacked albums whose names match `patterns`, but never `but`.
void empty_album_directory(const shell::Session& session, std::string_view patterns, const std::string& but);

/// Unpacks the album at `path` and shows its pictures in the column. Reports the album's problems.
void openpics(shell::Context& context, const std::string& path);

}  // namespace quill::viewer
