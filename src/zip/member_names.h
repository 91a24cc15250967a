#pragma once

#include "zip/archive.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Sets the name of each member from its bytes, as UTF-8: by the UTF-8 flag (APPNOTE D.1), the Unicode path field
/// (4.6.9), or else in the code page that fits best all the names without a sign of theirs. Names that are not in the
/// file in this form go into `decoded`, which must outlive the members: at most 16 MiB, further ones become
/// "unreadable".
void decode_names(std::vector<Member>& members, std::deque<std::string>& decoded);

/// Returns the code page in which `names`, not all of them UTF-8, read most like words: "CP437", "CP866", "CP932" or
/// "CP1252".
std::string_view detect_code_page(const std::vector<std::string_view>& names);

/// `bytes` of `code_page` as UTF-8. Bytes that the page doesn't define are read as Windows-1252.
std::string from_code_page(std::string_view bytes, std::string_view code_page);

}  // namespace quill::zip
