#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quill::htx {

enum class ReferenceKind : std::uint8_t {
    link,  ///< leads to another page when the user clicks it: <a href>, <area href>
    part   ///< is shown within the page: a picture, a frame, a style sheet
};

/// An address in a page or a style sheet.
struct Reference {
    ReferenceKind kind = ReferenceKind::link;
    std::string address;     ///< UTF-8; character references and escapes of style sheets replaced, percents not
    std::size_t offset = 0;  ///< bytes from the beginning of the text to the tag or the rule
};

/// The addresses of a page.
struct PageReferences {
    std::string base;  ///< of <base href>; empty if there is none
    std::vector<Reference> references;
};

/// Returns every address in a page, in the order of their tags: of attributes, srcset, meta refresh, style attributes
/// and style elements. `page` is UTF-8. Repeated addresses are included.
PageReferences references_of_page(std::string_view page);

/// Returns every address in a style sheet (CSS Syntax 4.3.6, 4.3.4): url(...) and @import "...".
std::vector<Reference> references_of_style(std::string_view style);

}  // namespace quill::htx
