#pragma once

#include <string>
#include <string_view>

namespace quill::codec {

/// Returns the extension, with its dot, for a content type in lower case (".gif" for "image/gif"), or empty for one not
/// known.
std::string_view extension_for_type(std::string_view content_type);

/// Returns the extension for a file that begins with `bytes` (48 are enough for all but a tar archive), or empty for a
/// type not known and for programs, whose names never come from their bytes.
std::string_view extension_for_bytes(std::string_view bytes);

/// A name for a file to which the text gives none: "message.txt" and the like for texts of messages, else "attachment"
/// with the extension that the first bytes tell, or the content type, or ".bin".
std::string made_up_name(bool message_text, std::string_view content_type, std::string_view bytes);

/// Whether a character of a name has no sign of its own, or turns the direction of those behind it.
bool is_unseen(char32_t c);

/// Whether a character of a name looks like a blank.
bool is_blank_character(char32_t c);

/// `name` as it came out of a message, made into one that is safe as a file's and shows all that it holds: one blank
/// where there are several, no character that is unseen. Empty where nothing is left of it.
std::string plain_name(std::string_view name);

/// The plain name without a ';'.
std::string attachment_name(std::string_view name);

}  // namespace quill::codec
