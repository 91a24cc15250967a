#pragma once

#include "worker/message.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <QSize>

#include <cstdint>
#include <memory>
#include <string_view>

namespace quill::picture {

/// A request for a picture.
struct Wanted {
    QSize bounds = {};          ///< empty: all pixels
    unsigned index = 0;         ///< of the frame, page or image
    std::uint64_t source = 0;   ///< requests with the same number have the same bytes; 0: never
    bool keeps_colors = false;  ///< keep the file's own colors, do not convert to sRGB
};

/// A decoded picture.
struct Decoded {
    QImage image = {};    ///< ARGB32_Premultiplied, upright, within the bounds; null: none
    QSize original = {};  ///< upright; empty: unknown
    unsigned count = 0;
    bool animated = false;
    int delay = 0;
    int repeats = 0;
    int percent = 0;
    worker::Fault fault = worker::Fault::none;
    QByteArray format = {};
};

/// Decodes pictures, one after another. Keeps its position in an animation for a request for the next frame.
class Decoder {
  public:
    Decoded decode(std::string_view file, const Wanted& wanted);

  private:
    /// An open file whose images are read one by one.
    struct Opened {
        std::uint64_t source = 0;
        QByteArray bytes;
        QBuffer buffer;
        QImageReader reader;
        unsigned next = 0;  ///< index of the next image
    };

    Decoded decode_by_plugin(std::string_view file, const Wanted& wanted);
    bool open(std::string_view file, const Wanted& wanted);
    bool seek(unsigned index);

    std::unique_ptr<Opened> opened_;
};

/// Decodes a small picture of each kind, so that everything that decoding needs is loaded. Returns the kinds that
/// failed.
QByteArrayList warm_up();

}  // namespace quill::picture
