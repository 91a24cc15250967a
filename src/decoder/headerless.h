#pragma once

#include "shell/session.h"

namespace quill::decoder {

/// Makes a copy of `EncodedPath`, encoded text without a header, that has a header, a name and an extension. Never
/// writes to the file itself.
///
/// If the name has a meaningful extension, asks for the user's consent and sets `EncodedPath` to the copy `1<name>`,
/// ready to be decoded. Any other name goes to the naming window, which sets `NamingTaken`: the run ends there. If the
/// copy cannot be written, or the user stops it, `EncodedPath` does not change.
///
/// `length` is the length of the file's first line in characters.
void nohead(shell::Context& context, int& length);

}  // namespace quill::decoder
