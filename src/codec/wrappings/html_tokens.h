#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Tags and escaped characters of HTML, as far as they matter for text saved from a page.
namespace quill::codec {

/// The effect of a tag on the lines of a text.
enum class TagRole : std::uint8_t {
    none,    ///< not a known tag
    inside,  ///< within a line: <b>, <a href=...>, <wbr>
    line,    ///< ends a line: <br>
    block,   ///< begins or ends a block of lines: <p>, <div>
    hidden   ///< content up to the closing tag is hidden: <style>
};

struct Tag {
    TagRole role = TagRole::none;
    bool closing = false;
    bool page = false;      ///< only pages have it
    std::string_view name;  ///< as written
    std::size_t size = 0;   ///< bytes from "<" to ">"
};

/// Reads the tag, comment or declaration at the beginning of `text`; role `none` if there is none.
Tag read_tag(std::string_view text);

/// A character written as "&lt;", "&#60;" or "&#x3C;".
struct Escape {
    std::string bytes;     ///< a no-break space becomes a blank
    std::size_t size = 0;  ///< bytes from "&" to ";"; 0 if there is none
    bool named = false;
};

/// Reads the escaped character at the beginning of `text`.
Escape read_escape(std::string_view text);

/// Returns true if `text` contains an escaped character with a name.
bool has_named_escape(std::string_view text);

}  // namespace quill::codec
