// Triage and the second tries on any text: every rewriting ends, and none outgrows its input.
#include "decoder/mime_wrap.h"
#include "decoder/normalise.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quill::decoder;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const Rewriting even = [](const quill::text::Source& t, const Sink& out) { copy_lines(t, out); };
    for (const Rewriting& rewriting :
         {Rewriting(drop_tags_at_line_ends), Rewriting(break_lines_at_tags), Rewriting(rewrap_body), even}) {
        std::size_t written = 0;
        rewriting(text, [&](std::string_view piece) {
            written += piece.size();
            return true;
        });
        if (written > 3 * size + 4) std::abort();  // at worst each character becomes a separate line
    }
    if (sample_line_length(text) > size || tail_from(text, size / 2).size() > size) std::abort();
    return 0;
}
