#pragma once

#include "cli/commands.h"

namespace quill::cli {

/// Adds `quill album list|extract|create`; see add_decode_command for `work`.
void add_album_command(CLI::App& app, Work& work);

}  // namespace quill::cli
