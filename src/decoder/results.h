#pragma once

#include "shell/results.h"
#include "shell/session.h"

#include <cstddef>
#include <string>

/// The rows of the results list, each with what is known of its file. The main window's list and its records are
/// changed here alone, so that they stay row for row the same files.
namespace quill::decoder {

/// Adds a row at the end. Where `row` has no verdict its size is read from the file of that name in the current
/// directory.
void add_result(shell::Context& context, shell::ResultRow row);

/// Gives row `row` another name.
void rename_result(shell::Context& context, std::size_t row, const std::string& name);

/// Takes row `row` away.
void remove_result(shell::Context& context, std::size_t row);

/// Shows the results panel over the start panel, the progress bar gone.
void show_results_panel(shell::Context& context);

}  // namespace quill::decoder
