#pragma once

#include "shell/session.h"

namespace quill::decoder {

/// Makes a copy of `EncodedPath`, encoded text without a header, that has a header, a name and an extension. The file
/// itself is never written.
///
/// For a name with a telling extension it asks for the user's consent, and `EncodedPath` then names the copy `1<name>`,
/// ready to be decoded. Any other name goes to the naming window, which sets `NamingTaken`: the run ends there. Where
/// the copy cannot be written, or the user stops that, `EncodedPath` stays as it was.
///
/// `length` is the length of the file's first line in characters.
void nohead(shell::Context& context, int& length);

}  // namespace quill::decoder
