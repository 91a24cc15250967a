#pragma once

#include <string>
#include <string_view>

/// Paths as text: their parts are bytes between slashes. All splitting and joining of paths is done here.
namespace quill::files {

/// Whether `path` is the root directory, which alone ends in a slash.
bool is_root(std::string_view path);

/// `dir` and `name` with one slash between them. An empty `dir` gives `name`.
std::string join(std::string_view dir, std::string_view name);

/// What stands before the last slash of `path`, leaving out a slash at the very end; "/" for a name in the root; empty
/// where there is no slash to cut at.
std::string dir_of(std::string_view path);

/// What stands behind the slash that dir_of cuts at; all of `path` where there is none.
std::string name_of(std::string_view path);

/// The position of the last '.' of the bare file name `name`, or its length where it has none. A dot at the very
/// beginning begins a hidden file's name, not an extension.
std::size_t extension_at(std::string_view name);

}  // namespace quill::files
