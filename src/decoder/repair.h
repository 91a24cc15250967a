#pragma once

#include "shell/session.h"

namespace quill::decoder {

// The two repairs by rewriting. Each writes `new.mim`, or the next free name of the series `new (2).mim` ..., beside
// `EncodedPath`, reports it and ends the process; `EncodedPath` itself is never written. An `EncodedPath` called
// `new.mim` (in any case) is refused, which ends the process too. If the input cannot be read or the copy cannot be
// written, a message gives the reason, nothing is changed, and the guide stays open; after a Stop it stays open without
// a message.

/// Puts a header in front of the encoded lines that names the attachment TEMP.
void otherfom(shell::Context& context);

/// Turns each `<BR>` into a line end.
void refom(shell::Context& context);

}  // namespace quill::decoder
