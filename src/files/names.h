#pragma once

#include <optional>
#include <string>
#include <string_view>

/// File names: made safe, made unique, looked up.
namespace quill::files {

/// Reduces a name that came out of a message or an archive to a bare file name that is safe here and elsewhere: no
/// directory (either slash; "C:" too), no control or text-direction characters, no leading dots, dashes or blanks, no
/// trailing dots or blanks, no name reserved for devices, at most 255 bytes with its extension kept. Valid UTF-8 stays
/// UTF-8; other 8-bit bytes are taken as Windows-1252. Empty where nothing is left.
std::string safe_name(std::string_view hostile);

/// A name like `name` that no entry of `dir` bears: itself, else `stem (2).ext`, `stem (3).ext`, ...
/// Only a proposal: what makes the file must still create it exclusively.
std::string unique_name(const std::string& dir, const std::string& name);

/// The n-th name of the row that unique_name goes through, from 1; never longer than 255 bytes.
std::string numbered_name(const std::string& name, unsigned n);

/// The entry of `dir` that is called `name`: exactly, else ignoring case.
std::optional<std::string> find_name(const std::string& dir, std::string_view name);

/// Whether `name` matches the pattern list `patterns` ("*.jpg;*.gif"; `*`, `?`), ignoring case. "*.*" matches all
/// names.
bool matches(std::string_view name, std::string_view patterns);

}  // namespace quill::files
