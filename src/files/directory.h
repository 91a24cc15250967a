#pragma once

#include "text/result.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Directories and facts about files by name. Nothing here follows a link unless its comment says so.
namespace quill::files {

/// Returns the names of the files (not directories) in `dir` that match `patterns`, sorted byte by byte ignoring ASCII
/// case, then by bytes. Includes hidden files. A link counts as its target.
Result<std::vector<std::string>> list_files(const std::string& dir, std::string_view patterns = "*.*");

/// Returns the names of the directories in `dir`, sorted in the same way, without "." and "..".
Result<std::vector<std::string>> list_directories(const std::string& dir);

/// Returns the size in bytes of the regular file at `path` (a link is followed); nullopt if there is none.
std::optional<std::uint64_t> file_size(const std::string& path);

bool exists(const std::string& path);
bool is_directory(const std::string& path);

bool is_link(const std::string& path);

/// Returns true if `path` leads to a pipe, a device or a socket, which output is written into instead of replacing it.
bool is_special(const std::string& path);

/// Returns true if `path` is a regular file that this process may execute.
bool is_executable(const std::string& path);

/// Returns true if `path` is a regular file that this process may write to.
bool is_writable(const std::string& path);

/// Distinguishes a file from all other existing files, regardless of links and spellings.
struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    auto operator<=>(const Identity&) const = default;
};

/// Returns the identity of the target of `path`; nullopt if there is none.
std::optional<Identity> identity_of(const std::string& path);

/// Returns true if both paths lead to the same existing file, regardless of links and spellings.
bool same_file(const std::string& a, const std::string& b);

/// Deletes the file at `path` (a link itself, not its target); returns false on failure.
bool remove_file(const std::string& path);

/// Makes the directory `path`, or one with a number in its name if that name is taken: `letters (2)`. Returns its path.
/// The umask is subtracted from `mode`.
Result<std::string> make_new_directory(const std::string& path, unsigned mode);

/// Renames within a file system. Fails with `exists` if `to` exists; never replaces.
Status rename_new(const std::string& from, const std::string& to);

/// Renames, replacing an existing `to`.
Status rename_over(const std::string& from, const std::string& to);

/// Returns the current directory of the process; empty if it is unknown.
std::string current_directory();
bool change_directory(const std::string& dir);

/// Returns `path` itself if it is absolute, else joined to the current directory; keeps "." and "..".
std::string absolute(const std::string& path);

/// Returns the target of `path` with all links followed; `path` itself if it leads nowhere.
std::string resolved(const std::string& path);

/// Reads a whole small file.
Result<std::string> read_file(const std::string& path);

}  // namespace quill::files
