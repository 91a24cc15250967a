#pragma once

#include <QColorSpace>
#include <QImage>
#include <QSize>

namespace quill::picture {

/// A picture as far as it could be decoded.
struct Drawn {
    QImage image = {};  ///< null: nothing
    QSize original = {};
    int percent = 0;          ///< of the rows: 100 for all
    bool cut = false;         ///< the data end too early
    QColorSpace colors = {};  ///< as stated by the file; else invalid
};

/// Returns true if a picture of this size has from 1 to `most` pixels.
inline bool has_pixels(QSize size, qint64 most) {
    return !size.isEmpty() && qint64{size.width()} * size.height() <= most;
}

/// Sets the decoded percentage: `rows` of its rows. Drops the image if there are none.
inline void count_rows(Drawn& drawn, int rows) {
    const int height = drawn.original.height();
    drawn.cut = rows < height;
    drawn.percent = drawn.cut ? qMin(99, static_cast<int>(qint64{100} * rows / height)) : 100;
    if (rows == 0) drawn.image = QImage();
}

}  // namespace quill::picture
