#pragma once

#include <string>
#include <string_view>

namespace quill::codec {

/// Returns the extension, with its dot, for a content type in lower case (".gif" for "image/gif"), or empty for an
/// unknown one.
std::string_view extension_for_type(std::string_view content_type);

/// Returns the extension for a file that begins with `bytes` (48 are enough for all but a tar archive), or empty for an
/// unknown type and for programs, whose names never come from their bytes.
std::string_view extension_for_bytes(std::string_view bytes);

/// Returns a name for a file without one: "message.txt" and the like for texts of messages, else "attachment" with the
/// extension indicated by the first bytes, or by the content type, or ".bin".
std::string made_up_name(bool message_text, std::string_view content_type, std::string_view bytes);

/// Returns true if a character of a name is invisible, or reverses the direction of those after it.
bool is_unseen(char32_t c);

/// Returns true if a character of a name looks like a blank.
bool is_blank_character(char32_t c);

/// Returns `name`, as found in a message, made safe for a file and without hidden contents: single blanks, no invisible
/// characters. Empty if nothing is left.
std::string plain_name(std::string_view name);

/// Returns the plain name without a ';'.
std::string attachment_name(std::string_view name);

}  // namespace quill::codec
