#pragma once

#include "shell/session.h"

namespace quill::decoder {

// The two repairs by rewriting. Each writes `new.mim`, or the next free name of the row `new (2).mim` ..., beside
// `EncodedPath`, says so and ends the process; `EncodedPath` itself stays untouched. An `EncodedPath` that is called
// `new.mim` (in any case) is refused, which ends the process too. Where the one cannot be read or the other cannot be
// written a message says why, nothing is changed, and the guide stays; so it does after a Stop, without a word.

/// Puts a header in front of the encoded lines, which calls the attachment TEMP.
void otherfom(shell::Context& context);

/// Turns each `<BR>` into a line end.
void refom(shell::Context& context);

}  // namespace quill::decoder
