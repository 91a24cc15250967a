#include "codec/mail/header_block.h"
#include "codec/recovery/content_name.h"
#include "text/utf8.h"

#include <cstdint>
#include <cstdlib>

// Any header: the resulting name must be UTF-8, and safe for a file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quill;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    codec::LineCursor cursor({{input, {0, size, 0}}});
    const codec::HeaderBlock block = codec::read_header(cursor, [](const codec::Line&) { return false; });
    if (!text::is_utf8(block.header.file_name)) std::abort();
    const std::string name = codec::attachment_name(block.header.file_name);
    if (name.find_first_of("/\\;") != std::string::npos || name.size() > 255 || name.starts_with('.')) std::abort();
    return 0;
}
