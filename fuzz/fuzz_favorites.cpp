#include "integration/favorites.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// A parsed favorite has an absolute directory or a relative one as written, and can be read back from its own text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quill::integration;
    const std::string_view contents(reinterpret_cast<const char*>(data), size);
    const auto favorite = parse_favorite(contents, "/home/ann");
    if (!favorite) return 0;
    // A caption or directory with a quote, a comma or a line end cannot come back, and one that begins with a blank
    // can't either.
    const std::string line = favorite->directory + favorite->caption;
    if (line.find_first_of("\",\r\n^!") != std::string::npos || line.find_first_of(" \t") == 0) return 0;
    if (!favorite->directory.starts_with('/')) return 0;
    const auto again = parse_favorite(format_favorite(*favorite), "/home/ann");
    if (!again || again->caption != favorite->caption) std::abort();
    return 0;
}
