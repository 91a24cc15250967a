#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The user's own text editor: one with its own window.
namespace quill::desktop {

/// A program with its arguments.
using Command = std::vector<std::string>;

/// Returns the command that the desktop entry `entry` (freedesktop.org desktop entries, key Exec) starts for the file
/// `path`. Nullopt for one that runs in a terminal, is hidden, or accepts no file.
std::optional<Command> command_of_entry(std::string_view entry, const std::string& path);

/// Returns the command that opens `path` in the user's text editor: $VISUAL or $EDITOR if that is not a terminal
/// program, else the desktop's program for text/plain. Nullopt if there are only terminal programs.
std::optional<Command> editor_command(const std::string& path);

}  // namespace quill::desktop
