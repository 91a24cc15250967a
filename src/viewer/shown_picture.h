#pragma once

#include "controls/control.h"
#include "platform/pictures.h"

#include <cstdint>

namespace quill::viewer {

/// A picture as a window shows it. Sizes and positions are in the screen's pixels.
struct ShownPicture : controls::Control {
    platform::Pixels pixels;
    float width = 0, height = 0;  ///< drawn size, if stretched
    float left = 0, top = 0;      ///< in its pane: 0, or minus the part scrolled out of sight
    bool stretch = false;         ///< scaled to `width` and `height`; else drawn at its natural size
    std::uint64_t revision = 0;   ///< counts the changes of the pixels

    void take(const platform::Pixels& taken) {
        pixels = taken;
        ++revision;
    }
};

enum class Axis : std::uint8_t { horizontal, vertical };

/// Returns a picture of `size` that shows the top left part of `pixels`, at its natural size, mirrored as a whole: if
/// `size` is larger than the picture, the rest is transparent. Empty for an empty size.
platform::Pixels mirrored(const platform::Pixels& pixels, platform::PictureSize size, Axis axis);

}  // namespace quill::viewer
