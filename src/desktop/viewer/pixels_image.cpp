#include "desktop/viewer/pixels_image.h"

#include <memory>

namespace quill::desktop {

QImage image_of(const platform::Pixels& pixels) {
    if (!pixels.bytes || pixels.size.width <= 0 || pixels.size.height <= 0) return {};
    auto* const kept = new std::shared_ptr<const std::uint8_t>(pixels.bytes);
    return {pixels.bytes.get(),
            pixels.size.width,
            pixels.size.height,
            static_cast<qsizetype>(pixels.stride),
            QImage::Format_ARGB32_Premultiplied,
            [](void* bytes) { delete static_cast<std::shared_ptr<const std::uint8_t>*>(bytes); },
            kept};
}

}  // namespace quill::desktop
