#pragma once

#include "codec/attachment.h"

#include <string_view>

namespace quill::codec {

/// Returns true if a body of this type is a complete message: a header, and a body.
bool is_message_type(std::string_view content_type);

/// Returns true for a message that is itself Base64 or quoted-printable, which RFC 2045 6.4 forbids and which is
/// common.
bool is_encoded_message(const Attachment& attachment);

}  // namespace quill::codec
