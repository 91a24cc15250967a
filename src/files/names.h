#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Safe, unique and case-insensitive file names.
namespace quill::files {

/// Reduces a name from a message or an archive to a bare file name that is safe here and on other systems: no directory
/// (either slash; "C:" too), no control or text-direction characters, no leading dots, dashes or blanks, no trailing
/// dots or blanks, no name reserved for devices, at most 255 bytes with its extension kept. Valid UTF-8 stays UTF-8;
/// other 8-bit bytes are read as Windows-1252. Returns an empty name if nothing is left.
std::string safe_name(std::string_view hostile);

/// Returns a name based on `name` that no entry of `dir` has: itself, else `stem (2).ext`, `stem (3).ext`, ... Only a
/// proposal: the caller must still create the file exclusively.
std::string unique_name(const std::string& dir, const std::string& name);

/// Returns the n-th name, from 1, of the series that unique_name tries; never longer than 255 bytes.
std::string numbered_name(const std::string& name, unsigned n);

/// Returns the entry of `dir` named `name`: an exact match, else one that ignores case.
std::optional<std::string> find_name(const std::string& dir, std::string_view name);

/// Returns true if `name` matches the pattern list `patterns` ("*.jpg;*.gif"; `*`, `?`), ignoring case. "*.*" matches
/// all names.
bool matches(std::string_view name, std::string_view patterns);

}  // namespace quill::files
