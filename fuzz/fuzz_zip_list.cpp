// The fields that a list shows of each member.

#include "archive/container/archive.h"
#include "archive/container/format.h"
#include "archive/container/member_time.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto archive = quill::zip::Archive::parse({reinterpret_cast<const char*>(data), size});
    if (!archive) return 0;
    for (const auto& member : archive->members()) {
        quill::zip::modified_time(member);
        if (quill::zip::date_time_text(member.dos_time).size() != 14) std::abort();
        if (quill::zip::method_name(member.content_method()).empty()) std::abort();
    }
    return 0;
}
