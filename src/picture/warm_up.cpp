#include "picture/decoder.h"

#include <QImageWriter>

#include <array>
#include <string>

namespace quill::picture {
namespace {

/// A picture of one pixel in a kind that Qt reads but does not write.
struct Sample {
    const char* format;
    std::string_view bytes;
};
using namespace std::string_view_literals;
constexpr std::array<Sample, 2> samples = {{
    {"gif", "GIF89a\1\0\1\0\x80\0\0\0\0\0\xFF\xFF\xFF,\0\0\0\0\1\0\1\0\0\2\2\x44\1\0;"sv},
    {"tga", "\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0\1\2\3\0\0\0\0\0\0\0\0"sv},
}};

constexpr std::array<const char*, 9> written = {"png", "jpeg", "bmp", "tiff", "webp", "ppm", "xbm", "xpm", "ico"};

QByteArray as_format(const char* format, const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter(&buffer, format).write(image);
    return bytes;
}

bool decodes(const QByteArray& bytes) {
    Decoder decoder;
    const std::string_view file(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return !decoder.decode(file, {{1, 1}, 0, 0}).image.isNull();
}

}  // namespace

QByteArrayList warm_up() {
    constexpr int most_megabytes = 512;  // for one QImage
    QImageReader::setAllocationLimit(most_megabytes);
    QByteArrayList missing;
    for (const Sample& sample : samples) {
        const bool decoded = decodes({sample.bytes.data(), static_cast<qsizetype>(sample.bytes.size())});
        // Qt's plugin accepts few TGA files; it is enough to have loaded it.
        if (!decoded && sample.format != std::string_view("tga")) missing << sample.format;
    }
    // Large enough that Qt scales it on several threads.
    QImage image(1024, 1024, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (const char* format : written) {
        const bool is_small = QByteArray(format) == "ico" || QByteArray(format) == "xbm" || QByteArray(format) == "xpm";
        if (!decodes(as_format(format, is_small ? image.scaled(16, 16) : image))) missing << format;
    }
    return missing;
}

}  // namespace quill::picture
