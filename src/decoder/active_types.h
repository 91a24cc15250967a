#pragma once

#include <string_view>

/// Types of files that act when they are opened.
namespace quill::decoder {

/// Returns a description of a file called `name` ("a web page, which can run scripts") if its type can contain commands
/// or scripts, else an empty text. `beginning` is the beginning of the file: its bytes decide if the name does not.
std::string_view active_type(std::string_view name, std::string_view beginning);

}  // namespace quill::decoder
