#include "codec/mail/nested_message.h"

namespace quill::codec {

bool is_message_type(std::string_view content_type) {
    return content_type == "message/rfc822" || content_type == "message/news" || content_type == "message/global";
}

bool is_encoded_message(const Attachment& attachment) {
    return (attachment.format == Format::base64 || attachment.format == Format::quoted_printable) &&
           is_message_type(attachment.content_type);
}

}  // namespace quill::codec
