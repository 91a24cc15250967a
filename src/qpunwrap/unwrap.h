#pragma once

#include "codec/recovery/recover.h"
#include "text/result.h"

#include <string>
#include <vector>

namespace quill::qpunwrap {

/// What came of one file.
struct Unwrapped {
    bool message = false;                ///< it is a message with quoted-printable parts, not bare text
    std::vector<codec::Recovered> made;  ///< the files written beside it
    std::vector<std::string> failed;     ///< "NAME: reason" of each that could not be written
};

/// Undoes quoted-printable (RFC 2045 6.7) in the file at `path`, into new files beside it; never replaces a file.
///
/// Of a message every part that its header calls quoted-printable is written: an attachment under its own name, a text
/// as `<stem>-message.txt` or the like. A text without such parts that holds quoted-printable all the same is written
/// as a whole, as `<stem>-unwrapped<.ext>`. A text that holds none makes nothing. Fails where `path` cannot be read.
Result<Unwrapped> unwrap(const std::string& path);

}  // namespace quill::qpunwrap
