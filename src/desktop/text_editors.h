#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The user's own text editor: one that opens a window of its own.
namespace quill::desktop {

/// A program with its arguments.
using Command = std::vector<std::string>;

/// The command that the desktop entry `entry` (freedesktop.org desktop entries, key Exec) starts for the file `path`.
/// Nullopt for one that runs in a terminal, is hidden, or takes no file.
std::optional<Command> command_of_entry(std::string_view entry, const std::string& path);

/// The command that opens `path` in the user's text editor: $VISUAL or $EDITOR where that is no terminal program, else
/// the desktop's program for text/plain. Nullopt where there is none but terminal programs.
std::optional<Command> editor_command(const std::string& path);

}  // namespace quill::desktop
