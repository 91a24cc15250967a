#pragma once

#include <string_view>

/// Types of files that do something when they are opened.
namespace quill::decoder {

/// Returns what a file called `name` is ("a web page, which can run scripts") where its type can carry commands or
/// scripts, or empty for all others. `beginning` is how the file begins: where the name says nothing, its bytes do.
std::string_view active_type(std::string_view name, std::string_view beginning);

}  // namespace quill::decoder
