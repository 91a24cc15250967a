#pragma once

#include "archive/methods/decompressor.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace quill::archive {

/// Compresses one stream, in steps of any size.
class Compressor {
  public:
    Compressor() = default;
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;
    virtual ~Compressor() = default;

    /// Compresses from `in` into `out`; `last` means that nothing follows `in`, and stays true until the stream has
    /// ended. Returns `ended` when all of the stream has been written, `broken` if the library fails.
    virtual Step step(std::string_view in, std::span<char> out, bool last) = 0;
};

/// A method that members can be written in.
struct CompressionMethod {
    std::uint16_t number = 0;
    std::uint16_t version = 0;  ///< of the format, times ten, needed by a reader (APPNOTE 4.4.3)
    std::string_view name;      ///< as given on the command line
    /// Makes the compressor; `level` is 1 to 9. Null for stored members.
    std::unique_ptr<Compressor> (*make)(int level) = nullptr;
};

/// Returns "store", "deflate", "zstd", "xz".
std::span<const CompressionMethod> compression_methods();

/// Returns the row of `number`; null if it can't be written.
const CompressionMethod* find_compression(std::uint16_t number);

}  // namespace quill::archive
