#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Decodes the file at `path`, or does what else its first bytes, fields, lines and headers ask for: opens a picture,
/// hands yEnc to `findfirst` and text without a header to `nohead`, mends what the decoding library could not read.
/// `path` is changed where the work goes on with another file.
///
/// What is mended is mended in the file itself, which is replaced in one step or stays as it was. A picture's opening
/// ends the process, and so does the user's wish to leave a file with a suspicious name alone. Nothing says whether
/// decoding succeeded but the main window and the windows that it opens.
void undec(shell::Context& context, std::string& path);

/// Asks whether to leave a file alone that has a header line of more than 70 characters; Yes ends the process.
void warn_of_long_name(shell::Context& context);

}  // namespace quill::decoder
