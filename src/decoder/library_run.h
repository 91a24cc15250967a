#pragma once

#include "shell/session.h"

#include <cstdint>
#include <string>

/// Decoding by the library, and the second tries where it makes nothing of a text.
namespace quill::decoder {

/// Has the library decode `path` into the current directory and shows the new files in the results list; where it
/// fails, `undectwo` tries again.
void decode_with_library(shell::Context& context, const std::string& path);

/// Makes an even copy of the text `path` in the current directory and has the library decode that. Each new file is
/// named in a message; where there is none the repair guide opens. So it does in the third pass of a run, which tries
/// nothing any more. `path` names the copy afterwards where one was made.
void undectwo(shell::Context& context, std::string& path);

/// Drops the head of the text `path`, up to byte number `offset`, and has `undectwo` try what follows. Raises `offset`
/// by 2 first.
void skiptotail(shell::Context& context, const std::string& path, std::uint64_t& offset);

}  // namespace quill::decoder
