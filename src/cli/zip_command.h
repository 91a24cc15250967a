#pragma once

#include "cli/commands.h"

namespace quill::cli {

/// Adds `quill zip list|extract|add|remove|test`; see add_decode_command for `work`.
void add_zip_command(CLI::App& app, Work& work);

/// Adds the command `extract` of `quill zip` to `parent`.
void add_extract_command(CLI::App& parent, Work& work);

}  // namespace quill::cli
