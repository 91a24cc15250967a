#pragma once

#include "shell/session.h"

#include <cstdint>
#include <string>

namespace quill::codec {
struct OutputFormat;
}

namespace quill::encoder {

/// Encodes the file at `path`, which the chooser picked, in the format of code `EncodeKind` (1 UUE, 2 MIME, 3 BinHex,
/// 4 XXE). The output's path is `path` up to its first '.', directories included, and the format's extension behind it;
/// a path without a '.' gives the extension alone, in the current directory. Asks what to do where that is the name of
/// another file. A failure is said in a message box and leaves everything as it was. Says "Done.", closes the chooser
/// and shows the main window, unless the user has withdrawn.
void encod(shell::Context& context, int EncodeKind, const std::string& path);

/// What came of an encoding.
enum class Encoding : std::uint8_t {
    done,
    failed,    ///< said in a message box
    withdrawn  ///< the user answered Cancel or pressed Stop: nothing was written
};

/// Encodes `path` in `format` under its default name, or another that the user agrees to, and shows how far it is.
Encoding encode_or_say(shell::Context& context, const codec::OutputFormat& format, const std::string& path);

/// The end of every encoding: the chooser's list shows the new file, "Done." is said where it is, the chooser closes
/// and the main window shows. After a withdrawal the chooser stays for another choice.
void leave_chooser_after_encoding(shell::Context& context, Encoding encoding);

}  // namespace quill::encoder
