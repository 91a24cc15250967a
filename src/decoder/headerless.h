#pragma once

#include "shell/session.h"

namespace quill::decoder {

/// Encoded text that stands in a file without a header: brings `EncodedPath` to lines of 76 characters (in place, in
/// one step; a file whose first line has 76 already stays as it is) and gives it a header, a name and an extension.
///
/// A name with a telling extension is asked for the user's consent, and `EncodedPath` then names the new file
/// `1<name>` with the header, ready to be decoded. Any other name goes to the naming window, and `NamingTaken` says so:
/// the run ends there. Where a file cannot be written the step is passed over and `EncodedPath` stays as it was.
///
/// A file `1<name>` that is there already is never replaced: it serves again where it is the very same, else the new
/// one is called `1<stem> (2)<.ext>` and so on. `SkipName` follows.
///
/// `length` is the length of the file's first line in characters.
void nohead(shell::Context& context, int& length);

}  // namespace quill::decoder
