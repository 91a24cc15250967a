#pragma once

#include "archive/container/archive.h"

#include <array>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// A character set for names that do not indicate theirs.
struct CharacterSet {
    std::string_view name;       ///< for people, who may type it in lower case too: "Shift-JIS"
    std::string_view code_page;  ///< for the C library: "CP932"
};

/// The user's choices.
constexpr std::array<CharacterSet, 7> character_sets{{
    {"CP437", "CP437"},
    {"CP850", "CP850"},
    {"CP866", "CP866"},
    {"Shift-JIS", "CP932"},
    {"GBK", "GBK"},
    {"Windows-1252", "CP1252"},
    {"UTF-8", "UTF-8"},
}};

/// Returns the set called `name`, ignoring case; nullopt if there is none.
std::optional<CharacterSet> character_set(std::string_view name);

/// Sets the name of each member from its bytes, as UTF-8: by the UTF-8 flag (APPNOTE D.1), the Unicode path field
/// (4.6.9), or else in `code_page`; if that is empty, in the one that best fits all names that do not indicate theirs.
/// A name that is invalid in the code page is read as UTF-8 or Windows-1252. Names that are not in the file in this
/// form go into `decoded`, which must outlive the members: at most 16 MiB, further ones become "unreadable". Returns
/// true if there are names that depend on the page.
bool decode_names(std::vector<Member>& members, std::deque<std::string>& decoded, std::string_view code_page = {});

/// Returns the code page in which `names`, not all of them UTF-8, read most like words: "CP437", "CP866", "CP932" or
/// "CP1252".
std::string_view detect_code_page(const std::vector<std::string_view>& names);

/// Returns `bytes` of `code_page` as UTF-8. Bytes that the page doesn't define are read as Windows-1252.
std::string from_code_page(std::string_view bytes, std::string_view code_page);

}  // namespace quill::zip
