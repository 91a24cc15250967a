#include "viewer/shown_picture.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace quill::viewer {
namespace {

constexpr std::size_t pixel_bytes = 4;

/// Copies the pixels of one row in reverse order.
void copy_reversed(const std::uint8_t* from, std::uint8_t* to_end, int count) {
    for (int i = 0; i < count; ++i) {
        to_end -= pixel_bytes;
        std::memcpy(to_end, from + static_cast<std::size_t>(i) * pixel_bytes, pixel_bytes);
    }
}

}  // namespace

platform::Pixels mirrored(const platform::Pixels& pixels, platform::PictureSize size, Axis axis) {
    if (size.width <= 0 || size.height <= 0) return {};
    const std::size_t stride = static_cast<std::size_t>(size.width) * pixel_bytes;
    const auto bytes = std::make_shared<std::vector<std::uint8_t>>(stride * static_cast<std::size_t>(size.height));
    const int columns = std::min(size.width, pixels.bytes ? pixels.size.width : 0);
    const int rows = std::min(size.height, pixels.bytes ? pixels.size.height : 0);
    for (int row = 0; row < rows; ++row) {
        const std::uint8_t* const from = pixels.bytes.get() + static_cast<std::size_t>(row) * pixels.stride;
        const int target = axis == Axis::vertical ? size.height - 1 - row : row;
        std::uint8_t* const to = bytes->data() + static_cast<std::size_t>(target) * stride;
        if (axis == Axis::horizontal) {
            copy_reversed(from, to + stride, columns);
        } else {
            std::copy_n(from, static_cast<std::size_t>(columns) * pixel_bytes, to);
        }
    }
    return {size, stride, {bytes, bytes->data()}};
}

}  // namespace quill::viewer
