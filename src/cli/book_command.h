#pragma once

#include "cli/commands.h"

namespace quill::cli {

/// Adds `quill book create|list|extract|check`; see add_decode_command for `work`.
void add_book_command(CLI::App& app, Work& work);

}  // namespace quill::cli
