#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Decodes the file at `path`, or does what else its first bytes, fields, lines and headers ask for: opens a picture,
/// hands yEnc to `findfirst` and text without a header to `nohead`. `path` is changed where the work goes on with
/// another file. The file itself is never written: what the library could not read as it is it reads from a copy.
///
/// A picture's opening ends the process, and so does the user's wish to leave a file with a suspicious name alone. Only
/// the main window and the windows that it opens show whether decoding succeeded.
void undec(shell::Context& context, std::string& path);

/// Asks whether to leave a file alone that has a header line of more than 70 characters; Yes ends the process.
void warn_of_long_name(shell::Context& context);

}  // namespace quill::decoder
