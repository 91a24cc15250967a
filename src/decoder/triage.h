#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Decodes the file at `path`, or does what else its first bytes, fields, lines and headers require: opens a picture,
/// passes yEnc to `findfirst` and text without a header to `nohead`. Changes `path` if the work continues with another
/// file. Never writes to the file itself: the library reads a copy if it could not read the original.
///
/// Opening a picture ends the process, and so does the user's wish to leave a file with a suspicious name alone. Only
/// the main window and the windows that it opens show whether decoding succeeded.
void undec(shell::Context& context, std::string& path);

/// Asks whether to leave a file alone that has a header line of more than 70 characters; Yes ends the process.
void warn_of_long_name(shell::Context& context);

}  // namespace quill::decoder
