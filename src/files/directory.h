#pragma once

#include "text/result.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Directories and what can be asked of a file by its name. Nothing here follows a link unless it says so.
namespace quill::files {

/// The names of the files (not directories) in `dir` that match `patterns`, sorted byte by byte ignoring ASCII case,
/// then by bytes. Hidden files are in it. Links count as what they lead to.
Result<std::vector<std::string>> list_files(const std::string& dir, std::string_view patterns = "*.*");

/// The names of the directories in `dir`, sorted likewise, without "." and "..".
Result<std::vector<std::string>> list_directories(const std::string& dir);

/// Bytes in the regular file at `path` (a link is followed); nullopt where there is none.
std::optional<std::uint64_t> file_size(const std::string& path);

bool exists(const std::string& path);
bool is_directory(const std::string& path);

bool is_link(const std::string& path);

/// Whether `path` leads to a pipe, a device or a socket, which output goes into instead of replacing it.
bool is_special(const std::string& path);

/// Whether `path` is a regular file that this process may execute.
bool is_executable(const std::string& path);

/// Whether `path` is a regular file that this process may write to.
bool is_writable(const std::string& path);

/// What tells a file from all others that are there, whatever links or spellings lead to it.
struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    auto operator<=>(const Identity&) const = default;
};

/// Returns the identity of what `path` leads to; nullopt where there is nothing.
std::optional<Identity> identity_of(const std::string& path);

/// Whether both paths lead to one file that is there, whatever links or spellings lie between.
bool same_file(const std::string& a, const std::string& b);

/// Deletes the file at `path` (a link itself, not its target); false where it could not be done.
bool remove_file(const std::string& path);

/// Makes the directory `path`, or one with a number in its name where that name is taken: `letters (2)`. Returns its
/// path. `mode` is less the umask.
Result<std::string> make_new_directory(const std::string& path, unsigned mode);

/// Renames within a file system. Fails with `exists` where `to` is there already; never replaces.
Status rename_new(const std::string& from, const std::string& to);

/// Renames, replacing what stands at `to`.
Status rename_over(const std::string& from, const std::string& to);

/// The current directory of the process; empty where it cannot be told.
std::string current_directory();
bool change_directory(const std::string& dir);

/// `path` itself where it is absolute, else joined to the current directory; "." and ".." stay as they are.
std::string absolute(const std::string& path);

/// The path that `path` leads to, all links followed; `path` itself where that leads nowhere.
std::string resolved(const std::string& path);

/// Reads a whole small file.
Result<std::string> read_file(const std::string& path);

}  // namespace quill::files
