#pragma once

#include "shell/session.h"

#include <string>
#include <vector>

/// The create wizard of the main window: makes a ZIP file, or a book of web pages. The beginning of the heading
/// `Label4` identifies its step.
namespace quill::htx {

/// Fills the routes to the wizard and connects its buttons. `context` must outlive its windows.
void provide_create_wizard(shell::Context& context);

/// Adds files, and all files in directories, to those for the wizard; a directory's files keep their paths from that
/// directory.
void add_to_wizard(shell::Context& context, const std::vector<std::string>& paths);

}  // namespace quill::htx
