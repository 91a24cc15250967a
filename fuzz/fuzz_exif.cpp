// The description in a JPEG picture.

#include "htx/picture_book/exif_description.h"
#include "text/utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

/// Returns a JPEG file whose only segment is EXIF data of these bytes.
std::string with_exif(std::string_view tiff) {
    const std::size_t length = 2 + 6 + tiff.size();
    if (length > 0xFFFF) return {};
    std::string out = {"\xFF\xD8\xFF\xE1", 4};
    out.append(1, static_cast<char>(length >> 8U)).append(1, static_cast<char>(length & 0xFFU));
    return out.append("Exif\0\0", 6).append(tiff);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const std::string& file : {std::string(bytes), with_exif(bytes)}) {
        const std::string text = quill::htx::exif_description(file);
        if (!quill::text::is_utf8(text) || text.find_first_of("\r\n") != std::string::npos) std::abort();
    }
    return 0;
}
