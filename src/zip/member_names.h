#pragma once

#include "zip/archive.h"

#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Sets the name of each member from its bytes, as UTF-8: by the UTF-8 flag (APPNOTE D.1), the Unicode path field
/// (4.6.9), or else in the code page that fits best all the names that tell nothing of themselves.
void decode_names(std::vector<Member>& members);

/// The code pages that names are tried in: "UTF-8", "CP437", "CP866", "CP932", "CP1252".
/// `names` are those with bytes above 127. The choice is the page in which they read most like words.
std::string_view detect_code_page(const std::vector<std::string_view>& names);

/// `bytes` of `code_page` as UTF-8. Bytes that the page doesn't define are read as Windows-1252.
std::string from_code_page(std::string_view bytes, std::string_view code_page);

}  // namespace quill::zip
