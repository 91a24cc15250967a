// Lines and fields, in any mixture, cover the text from its beginning to its end and always advance.
#include "text/reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    quill::text::Reader reader(bytes);
    for (std::size_t i = 0; !reader.at_end(); ++i) {
        const std::size_t before = reader.offset();
        const bool by_line = (static_cast<unsigned char>(bytes[i % size]) & 1U) != 0;
        const std::optional<std::string_view> piece = by_line ? reader.line() : reader.field();
        const bool inside = piece && piece->data() >= bytes.data() + before &&
                            piece->data() + piece->size() <= bytes.data() + reader.offset();
        if (!inside || reader.offset() <= before) std::abort();
    }
    return reader.line() || reader.field() ? std::abort(), 0 : 0;
}
