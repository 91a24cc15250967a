#pragma once

#include "shell/session.h"

#include <string>
#include <string_view>

namespace quill::codec {
struct OutputFormat;
}

namespace quill::encoder {

/// Encodes the file at `path`, which the chooser picked, in the format of code `EncodeKind` (1 UUE, 2 MIME, 3 BinHex,
/// 4 XXE). The output's path is `path` up to its first '.', directories included, and the format's extension behind it;
/// a path without a '.' gives the extension alone, in the current directory. What stands there is replaced once the
/// output is whole, unless it is the input. A failure is said in a message box and leaves everything as it was. Closes
/// the chooser and shows the main window.
void encod(shell::Context& context, int EncodeKind, const std::string& path);

/// Encodes `path` in `format` under its default name, and says in a message box why that failed. False on a failure.
bool encode_or_say(shell::Context& context, const codec::OutputFormat& format, const std::string& path);

/// The end of every encoding: the chooser's list shows the new file, "Done." is said where `done`, the chooser closes
/// and the main window shows.
void leave_chooser_after_encoding(shell::Context& context, bool done);

}  // namespace quill::encoder
