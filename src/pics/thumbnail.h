#pragma once

#include "platform/pictures.h"

#include <string>

namespace quill::pics {

/// The size requested for pictures that thumbnails are made from.
constexpr platform::PictureSize thumbnail_bounds = {200, 200};

/// Returns the thumbnail of a picture as albums store it: a BMP file of `thumbnail_size` bytes. The picture is scaled
/// to a width of 100 if it is at least as wide as high, else to a height of 80, and begins at the top left corner of 81
/// x 61 white pixels; anything outside is cut off. `original` is the size of the whole picture. All white if there are
/// no pixels.
std::string thumbnail_of(const platform::Pixels& pixels, platform::PictureSize original);

}  // namespace quill::pics
