#pragma once

#include "shell/session.h"
#include "text/result.h"

#include <cstddef>
#include <string>

namespace quill::decoder {

/// Asks whether to make a copy of `EncodedPath` with a header and work on it; any answer but Yes ends the process.
void ask_for_headered_copy(shell::Context& context);

/// Writes the encoded text of `EncodedPath`, whose first line has `line_length` characters, under a header that names
/// it `name`, as a new file `1<its name>` beside it, in lines of 76 characters. Makes `EncodedPath` that file, puts its
/// lower-case name into `SkipName`, and returns its bare name.
///
/// Replaces no file: an existing file with exactly the same bytes is reused, else the new one is called `1<stem>
/// (2)<.ext>` and so on. On failure, or if the user stops it (`cancelled`), nothing is changed.
Result<std::string> write_headered_copy(shell::Context& context, const std::string& name, std::size_t line_length);

}  // namespace quill::decoder
