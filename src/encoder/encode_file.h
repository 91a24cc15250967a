#pragma once

#include "shell/session.h"

#include <cstdint>
#include <string>

namespace quill::codec {
struct OutputFormat;
}

namespace quill::encoder {

/// Encodes the file at `path`, which the chooser picked, in the format of code `EncodeKind` (1 UUE, 2 MIME, 3 BinHex, 4
/// XXE). The output's path is `path` up to its first '.', directories included, followed by the format's extension; a
/// path without a '.' gives only the extension, in the current directory. Asks what to do if another file has that
/// name. Reports a failure in a message box and leaves everything unchanged. Shows "Done.", closes the chooser and
/// shows the main window, unless the user has withdrawn.
void encod(shell::Context& context, int EncodeKind, const std::string& path);

/// The result of an encoding.
enum class Encoding : std::uint8_t {
    done,
    failed,    ///< reported in a message box
    withdrawn  ///< the user answered Cancel or pressed Stop: nothing was written
};

/// Encodes `path` in `format` under its default name, or another that the user agrees to, and shows the progress.
Encoding encode_or_say(shell::Context& context, const codec::OutputFormat& format, const std::string& path);

/// Ends every encoding: lists the new file in the chooser, says "Done." if there is one, closes the chooser and shows
/// the main window. After a withdrawal the chooser stays open for another choice.
void leave_chooser_after_encoding(shell::Context& context, Encoding encoding);

}  // namespace quill::encoder
