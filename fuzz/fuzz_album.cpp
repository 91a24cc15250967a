// Reads an album: no picture is outside the file, file names are bare and unique, and the pictures of an undamaged
// album are contiguous.

#include "pics/album.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto album = quill::pics::read_album({reinterpret_cast<const char*>(data), size});
    if (!album) return 0;
    std::set<std::string> names;
    std::uint64_t last_end = 0;
    for (const quill::pics::Entry& entry : album->entries) {
        if (entry.offset > size || entry.size > size - entry.offset) std::abort();
        if (entry.file_name.empty() || entry.file_name.find('/') != std::string::npos) std::abort();
        if (!names.insert(entry.file_name).second) std::abort();
        const bool is_whole = entry.verdict == quill::report::Verdict::whole;
        if (is_whole && (entry.offset < last_end || entry.stated_size != entry.size)) std::abort();
        if (is_whole) last_end = entry.offset + entry.size;
    }
    return 0;
}
