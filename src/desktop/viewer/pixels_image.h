#pragma once

#include "platform/pictures.h"

#include <QImage>

namespace quill::desktop {

/// Returns the pixels as an image that shares their bytes; null for none.
QImage image_of(const platform::Pixels& pixels);

}  // namespace quill::desktop
