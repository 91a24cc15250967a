#pragma once

#include "archive/methods/decompressor.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace quill::archive {

/// A compression method (APPNOTE 4.4.5).
struct Method {
    std::uint16_t number = 0;
    std::string_view name;                                 ///< as shown to people
    DecompressorPtr (*make)(const StreamInfo&) = nullptr;  ///< null for an unreadable method
};

/// Returns all methods that have a name.
std::span<const Method> methods();

/// Returns the row of `number`; null if it has none.
const Method* find_method(std::uint16_t number);

// The constructors of the rows, each in its own file.
DecompressorPtr make_stored(const StreamInfo& info);
DecompressorPtr make_shrunk(const StreamInfo& info);
DecompressorPtr make_reduced(const StreamInfo& info);
DecompressorPtr make_imploded(const StreamInfo& info);
DecompressorPtr make_deflated(const StreamInfo& info);
DecompressorPtr make_deflate64(const StreamInfo& info);
DecompressorPtr make_bzip2(const StreamInfo& info);
DecompressorPtr make_lzma(const StreamInfo& info);
DecompressorPtr make_zstandard(const StreamInfo& info);
DecompressorPtr make_xz(const StreamInfo& info);
DecompressorPtr make_ppmd(const StreamInfo& info);

}  // namespace quill::archive
