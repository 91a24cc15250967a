#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

struct libdeflate_decompressor;

namespace quill::archive {

/// Decompresses Deflate (RFC 1951) in one call of libdeflate, twice as fast as in steps. Keeps its buffer from one
/// member to the next.
class WholeInflater {
  public:
    WholeInflater();
    ~WholeInflater();

    struct Result {
        std::string_view content;  ///< valid until the next call
        std::size_t read = 0;      ///< bytes of the data up to the end of the stream
    };

    /// Returns the content of `data`; nullopt if it does not have exactly `size` bytes, the data are broken, or they
    /// are too large or `size` too unlikely for one call.
    std::optional<Result> inflate(std::string_view data, std::uint64_t size);

  private:
    struct FreeDecompressor {
        void operator()(libdeflate_decompressor* decompressor) const;
    };

    std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor_;
    std::unique_ptr<char[]> buffer_;
    std::size_t buffer_size_ = 0;
};

}  // namespace quill::archive
