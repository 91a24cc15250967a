#pragma once

#include "shell/session.h"

#include <string>

/// Decoding of a text that begins a yEnc post: by the decoding library, like any other text, so that every post and
/// part in it is found.
namespace quill::decoder {

/// Decodes the yEnc text in `path`: with `getbytestoo` if the command line begins with '&' or the lines before the
/// first `=ybegin` line show a newsreader that doubles dots at line starts, else with `getbytes`.
void findfirst(shell::Context& context, std::string& path);

/// Decodes all of `path` into the current directory, under free names, and reports the new files. Shows `path` as the
/// current file afterwards.
void getbytes(shell::Context& context, std::string& path);

/// Does the same; doubled dots at line starts count once unless a size or a checksum contradicts it.
void getbytestoo(shell::Context& context, std::string& path);

}  // namespace quill::decoder
