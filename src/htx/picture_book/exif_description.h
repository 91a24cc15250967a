#pragma once

#include <string>
#include <string_view>

namespace quill::htx {

/// Returns the description in the EXIF data of a JPEG file (TIFF 6.0, tag 270 of the first directory) as one line of
/// UTF-8. Empty where there is none, where the file is cut off before it, and where a camera wrote only its own name.
std::string exif_description(std::string_view jpeg);

}  // namespace quill::htx
