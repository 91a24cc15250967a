#pragma once

#include "shell/session.h"

#include <string>

/// Decoding of a text that begins a yEnc post: by the decoding library, as any other text, so that every post and part
/// in it comes out.
namespace quill::decoder {

/// Decodes the yEnc text in `path`: by `getbytestoo` where the command line begins with '&' or the lines ahead of the
/// first `=ybegin` line show a newsreader that doubles dots at line starts, else by `getbytes`.
void findfirst(shell::Context& context, std::string& path);

/// Decodes all that `path` holds into the current directory, under names that nobody has, and reports the new files.
/// Names `path` in the line of the file afterwards.
void getbytes(shell::Context& context, std::string& path);

/// The same; doubled dots at line starts count once where neither a size nor a checksum says otherwise.
void getbytestoo(shell::Context& context, std::string& path);

}  // namespace quill::decoder
