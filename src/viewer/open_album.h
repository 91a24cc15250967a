#pragma once

#include "shell/session.h"

#include <string>
#include <string_view>

namespace quill::viewer {

/// Deletes the files in the directory that albums are unpacked into whose names match `patterns`, but never `but`.
void empty_album_directory(const shell::Session& session, std::string_view patterns, const std::string& but);

/// Unpacks the album at `path` and shows its pictures in the column. What is wrong with the album is said.
void openpics(shell::Context& context, const std::string& path);

}  // namespace quill::viewer
