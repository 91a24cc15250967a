#pragma once

#include "shell/session.h"
#include "text/result.h"

#include <string>

namespace quill::decoder {

/// Asks whether a copy of `EncodedPath` with a header may be made and worked on; any answer but Yes ends the process.
void ask_for_headered_copy(shell::Context& context);

/// Writes the encoded text of `EncodedPath` under a header that calls it `name` as a new file `1<its name>` beside it.
/// Moves `EncodedPath` to that file, puts its lower-case name into `SkipName`, and returns its bare name.
///
/// A file of that name is never replaced: where it is the very file that would be written it serves again, else the
/// new one is called `1<stem> (2)<.ext>` and so on. On failure nothing is changed.
Result<std::string> write_headered_copy(shell::Session& session, const std::string& name);

}  // namespace quill::decoder
