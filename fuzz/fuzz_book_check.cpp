#include "archive/container/archive.h"
#include "htx/book/book_check.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// A check counts every link once, and finds at most as many broken ones.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto archive = quill::zip::Archive::parse({reinterpret_cast<const char*>(data), size});
    if (!archive) return 0;
    const quill::htx::BookCheck check = quill::htx::check_book(*archive, {});
    if (check.broken.size() > check.links || check.pages > archive->members().size()) std::abort();
    return 0;
}
