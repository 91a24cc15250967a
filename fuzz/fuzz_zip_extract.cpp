// Reads every member into nothing, up to a megabyte each. A verified member has a stated size.

#include "archive/container/format.h"
#include "archive/container/member_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto archive = quill::zip::Archive::parse({reinterpret_cast<const char*>(data), size});
    if (!archive) return 0;
    quill::zip::MemberReader reader(*archive, "password");
    std::size_t members = 0;
    for (const auto& member : archive->members()) {
        if (++members > 64) break;
        std::size_t read = 0;
        const auto content =
            reader.read(member, [&](std::string_view bytes) { return (read += bytes.size()) < 1U << 20U; });
        if (content.size != read) std::abort();
        const auto own = quill::zip::parse_local_header(archive->bytes(), member.local_offset);
        const bool is_stated = read == member.uncompressed_size || (own && read == own->uncompressed_size);
        if (content.verdict == quill::zip::Verdict::verified && member.sizes_known && !is_stated) std::abort();
    }
    return 0;
}
