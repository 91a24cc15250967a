#pragma once

#include "codec/recovery/recover.h"
#include "text/result.h"

#include <string>
#include <vector>

namespace quill::qpunwrap {

/// The result for one file.
struct Unwrapped {
    bool message = false;                ///< it is a message with quoted-printable parts, not bare text
    std::vector<codec::Recovered> made;  ///< the files written beside it
    std::vector<std::string> failed;     ///< "NAME: reason" of each that could not be written
};

/// Undoes quoted-printable (RFC 2045 6.7) in the file at `path`, into new files beside it; never replaces a file.
///
/// Writes every part of a message whose header announces quoted-printable: an attachment under its own name, a text as
/// `<stem>-message.txt` or the like. Writes a text without such parts that contains quoted-printable anyway as a whole,
/// as `<stem>-unwrapped<.ext>`. Makes nothing of a text that contains none. Fails if `path` cannot be read.
Result<Unwrapped> unwrap(const std::string& path);

}  // namespace quill::qpunwrap
