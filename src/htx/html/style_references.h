#pragma once

#include "htx/html/references.h"

namespace quill::htx {

/// Appends the addresses in `style`, which begins `offset` bytes from the beginning of its page.
void add_style_references(std::string_view style, std::size_t offset, std::vector<Reference>& out);

}  // namespace quill::htx
