#include "archive/methods/whole_inflater.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstdint>

namespace quill::archive {
namespace {

constexpr std::uint64_t largest = 64U << 20U;
constexpr std::uint64_t most_ratio = 1032;  // of Deflate
constexpr std::uint64_t always_likely = 256U << 10U;

}  // namespace

void WholeInflater::FreeDecompressor::operator()(libdeflate_decompressor* decompressor) const {
    libdeflate_free_decompressor(decompressor);
}

WholeInflater::WholeInflater() = default;
WholeInflater::~WholeInflater() = default;

std::optional<WholeInflater::Result> WholeInflater::inflate(std::string_view data, std::uint64_t size) {
    if (size > largest || data.size() > largest || size > data.size() * most_ratio + always_likely) return std::nullopt;
    if (!decompressor_) decompressor_.reset(libdeflate_alloc_decompressor());
    if (!buffer_ || size > buffer_size_) {  // a member of size 0 needs a buffer too
        buffer_.reset();
        buffer_size_ = std::max<std::size_t>(size, 1);
        buffer_ = std::make_unique_for_overwrite<char[]>(buffer_size_);
    }
    std::size_t read = 0, made = 0;
    const libdeflate_result result = libdeflate_deflate_decompress_ex(decompressor_.get(), data.data(), data.size(),
                                                                      buffer_.get(), size, &read, &made);
    if (result != LIBDEFLATE_SUCCESS || made != size) return std::nullopt;
    return Result{{buffer_.get(), made}, read};
}

}  // namespace quill::archive
