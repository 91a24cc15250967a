#include "decoder/mime_wrap.h"
#include "text/reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

/// Returns the re-wrapped text, with the carry held in memory.
std::string rewrapped_with_carry(std::string_view text) {
    constexpr std::size_t length = 76;
    std::string out, carry;
    quill::text::Reader reader(text);
    while (auto field = reader.field()) {
        if (field->ends_with("  ")) field->remove_suffix(2);
        carry += *field;
        for (int line = 0; line < 2 && carry.size() >= length; ++line) {
            out.append(carry, 0, length).append("\r\n");
            carry.erase(0, length);
        }
    }
    return out + carry + "\r\n";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string out;
    const auto append = [&](std::string_view piece) {
        out += piece;
        return true;
    };
    quill::decoder::rewrap(text, append);
    if (out != rewrapped_with_carry(text)) std::abort();

    out.clear();
    quill::decoder::break_lines_at_tags(text, append);
    if (out.find("<BR>") != out.npos) std::abort();
    quill::decoder::copy_from_first_long_line(text, append);
    return 0;
}
