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

/// What is wanted of a picture.
struct Wanted {
    QSize bounds = {};          ///< empty: all pixels
    unsigned index = 0;         ///< of the frame, page or image
    std::uint64_t source = 0;   ///< two calls with the same number have the same bytes; 0: never
    bool keeps_colors = false;  ///< the file's own numbers, not those of sRGB
};

/// A decoded picture.
struct Decoded {
    QImage image = {};    ///< ARGB32_Premultiplied, upright, within the bounds; null: none
    QSize original = {};  ///< upright; empty: not known
    unsigned count = 0;
    bool animated = false;
    int delay = 0;
    int repeats = 0;
    int percent = 0;
    worker::Fault fault = worker::Fault::none;
    QByteArray format = {};
};

/// Decodes pictures, one after the other. It stays where it is in an animation whose next frame is wanted.
class Decoder {
  public:
    Decoded decode(std::string_view file, const Wanted& wanted);

  private:
    /// A file that images are read from one by one.
    struct Opened {
        std::uint64_t source = 0;
        QByteArray bytes;
        QBuffer buffer;
        QImageReader reader;
        unsigned next = 0;  ///< index of the image that is read next
    };

    Decoded decode_by_plugin(std::string_view file, const Wanted& wanted);
    bool open(std::string_view file, const Wanted& wanted);
    bool seek(unsigned index);

    std::unique_ptr<Opened> opened_;
};

/// Decodes a small picture of each kind, so that all that decoding loads is loaded. Returns the kinds that failed.
QByteArrayList warm_up();

}  // namespace quill::picture
