#pragma once

#include "shell/session.h"

#include <string>
#include <vector>

/// The create wizard of the main window: makes a ZIP file, or a book of web pages. Its step is what the heading
/// `Label4` begins with.
namespace quill::htx {

/// Fills the routes that lead into the wizard and connects its buttons. `context` must outlive its windows.
void provide_create_wizard(shell::Context& context);

/// Adds files, and all files in directories, to those that the wizard will take; a directory's files keep their
/// directories from it on.
void add_to_wizard(shell::Context& context, const std::vector<std::string>& paths);

}  // namespace quill::htx
