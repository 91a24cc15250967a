#include "decoder/diagnosis.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// The diagnosis of any bytes ends with advice and can be shown: no control characters except line ends.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string text = quill::decoder::diagnosis_text(bytes);
    if (text.find("What to try next: ") == text.npos) std::abort();
    for (const char c : text) {
        if ((c < ' ' && c != '\n') || c == '\x7F') std::abort();
    }
    return 0;
}
