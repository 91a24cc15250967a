#pragma once

#include <QImage>

#include <string>

namespace quill::desktop {

/// Returns the picture in the file at `path`, scaled down to fit `bounds`; of an animation, the first. Null where there
/// is none that can be decoded. Decodes in this process and waits for it: for pages of books, whose layout needs the
/// size at once; all else asks the platform's pictures.
QImage read_picture(const std::string& path, QSize bounds);

}  // namespace quill::desktop
