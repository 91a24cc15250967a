#include "codec/recovery/decode.h"
#include "codec/recovery/part_join.h"
#include "codec/scan/scanner.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

// Any text: scanned, joined and decoded. Every range must be inside the input, and two scans must agree.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quill::codec;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    LineCursor cursor({{input, {0, size, 0}}});
    Found found = scan(cursor);
    const std::array inputs = {input};
    const std::array paths = {std::string("x.001")};
    const Found joined = join_parts(std::move(found.files), inputs, paths);
    for (const FoundFile& file : joined.files) {
        for (const Range& range : file.attachment.body) {
            if (range.begin > range.end || range.end > size || range.source != 0) std::abort();
        }
        std::uint64_t written = 0;
        const Outcome outcome = decode(file.attachment, inputs, [&](std::string_view bytes) {
            written += bytes.size();
            return written < 64 * (size + 1024);
        });
        if (outcome.problems.size() > most_problems + 1) std::abort();
    }
    return 0;
}
