#pragma once

#include <string>
#include <string_view>

/// Paths as text: parts of bytes between slashes. All splitting and joining of paths is done here.
namespace quill::files {

/// Returns true if `path` is the root directory, the only path that ends in a slash.
bool is_root(std::string_view path);

/// Returns `dir` and `name` with one slash between them. An empty `dir` gives `name`.
std::string join(std::string_view dir, std::string_view name);

/// Returns the part before the last slash of `path`, ignoring a slash at the very end; "/" for a name in the root;
/// empty if there is no slash.
std::string dir_of(std::string_view path);

/// Returns the part after the slash at which dir_of cuts; all of `path` if there is none.
std::string name_of(std::string_view path);

/// Returns the position of the last '.' of the bare file name `name`, or its length if it has none. A dot at the very
/// beginning begins a hidden file's name, not an extension.
std::size_t extension_at(std::string_view name);

}  // namespace quill::files
