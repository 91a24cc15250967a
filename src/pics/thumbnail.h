#pragma once

#include "platform/pictures.h"

#include <string>

namespace quill::pics {

/// The size in which a picture is asked for, so that its thumbnail can be made of it.
constexpr platform::PictureSize thumbnail_bounds = {200, 200};

/// Returns the thumbnail of a picture as albums store it: a BMP file of `thumbnail_size` bytes. The picture is scaled
/// to a width of 100 where it is at least as wide as it is high, else to a height of 80, and begins at the top left
/// corner of 81 x 61 white pixels; what lies outside is cut off. `original` is the size of the whole picture. All white
/// where there are no pixels.
std::string thumbnail_of(const platform::Pixels& pixels, platform::PictureSize original);

}  // namespace quill::pics
