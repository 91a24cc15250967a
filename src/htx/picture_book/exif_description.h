#pragma once

#include <string>
#include <string_view>

namespace quill::htx {

/// Returns the description in the EXIF data of a JPEG file (TIFF 6.0, tag 270 of the first directory) as one line of
/// UTF-8. Empty if there is none, if the file is cut off before it, or if a camera wrote only its own name.
std::string exif_description(std::string_view jpeg);

}  // namespace quill::htx
