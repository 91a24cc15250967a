#include "picture/jpeg.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <vector>
// libjpeg requires <cstdio> first
#include <jerror.h>
#include <jpeglib.h>

namespace quill::picture {
namespace {

/// The state of libjpeg with its errors caught: fatal ones jump out, warnings are counted and stored.
struct Decompressor {
    jpeg_decompress_struct info = {};
    jpeg_error_mgr errors = {};
    std::jmp_buf fatal = {};
    bool cut = false;
    bool warned = false;
    Drawn drawn = {};               ///< a member, so that a jump preserves it
    std::vector<JSAMPLE> ink = {};  ///< a row of CMYK
    int good = 0;                   ///< rows before the first sign of damage
    int there = 0;                  ///< rows before the data ended

    Decompressor() {
        info.err = jpeg_std_error(&errors);
        info.client_data = this;
        errors.error_exit = [](j_common_ptr common) {
            std::longjmp(static_cast<Decompressor*>(common->client_data)->fatal, 1);
        };
        errors.emit_message = [](j_common_ptr common, int level) {
            if (level >= 0) return;
            auto* self = static_cast<Decompressor*>(common->client_data);
            self->warned = true;
            if (common->err->msg_code == JWRN_JPEG_EOF) self->cut = true;
        };
        jpeg_create_decompress(&info);
    }
    ~Decompressor() { jpeg_destroy_decompress(&info); }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;
};

/// Returns the scale, in eighths, at which to decode the picture: the smallest of the fast ones that covers the bounds.
unsigned eighths(QSize size, QSize bounds) {
    if (bounds.isEmpty()) return 8;
    const QSize wanted = size.scaled(bounds, Qt::KeepAspectRatio);
    for (const unsigned n : {1U, 2U, 4U}) {
        const int part = static_cast<int>(n);
        if ((size.width() * part + 7) / 8 >= wanted.width() && (size.height() * part + 7) / 8 >= wanted.height())
            return n;
    }
    return 8;
}

/// Converts a row of CMYK, inverted like that of Adobe's programs or not, to 32-bit pixels.
void convert_cmyk(const JSAMPLE* cmyk, QRgb* out, JDIMENSION width, bool inverted) {
    const auto ink = [&](JSAMPLE value) { return inverted ? int{value} : 255 - value; };
    for (JDIMENSION x = 0; x < width; ++x, cmyk += 4) {
        const int black = ink(cmyk[3]);
        const auto channel = [&](JSAMPLE value) { return (ink(value) * black + 127) / 255; };
        out[x] = qRgb(channel(cmyk[0]), channel(cmyk[1]), channel(cmyk[2]));
    }
}

bool is_cmyk(const jpeg_decompress_struct& info) {
    return info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
}

void set_output(jpeg_decompress_struct& info, QSize bounds) {
    info.scale_denom = 8;
    info.scale_num = eighths({static_cast<int>(info.image_width), static_cast<int>(info.image_height)}, bounds);
    info.out_color_space = is_cmyk(info) ? JCS_CMYK : Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;
}

void read_row(Decompressor& jpeg, uchar* out) {
    JSAMPROW row = is_cmyk(jpeg.info) ? jpeg.ink.data() : out;
    jpeg_read_scanlines(&jpeg.info, &row, 1);
    if (!is_cmyk(jpeg.info)) return;
    convert_cmyk(jpeg.ink.data(), reinterpret_cast<QRgb*>(out), jpeg.info.output_width,
                 jpeg.info.saw_Adobe_marker != 0);
}

void read_rows(Decompressor& jpeg) {
    const bool is_progressive = jpeg_has_multiple_scans(&jpeg.info) != 0;  // such a file lacks detail, not rows
    while (jpeg.info.output_scanline < jpeg.info.output_height) {
        const auto row = static_cast<int>(jpeg.info.output_scanline);
        read_row(jpeg, jpeg.drawn.image.scanLine(row));
        if (!jpeg.warned) jpeg.good = row + 1;
        if (!jpeg.cut || is_progressive) jpeg.there = row + 1;
    }
    if (is_progressive && jpeg.warned) jpeg.good = jpeg.there;
}

/// Returns the color profile in the header; an invalid one for CMYK, which is converted without it.
QColorSpace profile_of(jpeg_decompress_struct& info) {
    JOCTET* bytes = nullptr;
    unsigned size = 0;
    if (is_cmyk(info) || jpeg_read_icc_profile(&info, &bytes, &size) == 0) return {};
    const QByteArray profile(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    std::free(bytes);
    return QColorSpace::fromIccProfile(profile);
}

/// Reads a whole file. Fatal errors jump out of it.
void read_file(Decompressor& jpeg, std::string_view file, QSize bounds, qint64 most_pixels) {
    jpeg_mem_src(&jpeg.info, reinterpret_cast<const unsigned char*>(file.data()), file.size());
    jpeg_save_markers(&jpeg.info, JPEG_APP0 + 2, 0xFFFF);  // color profiles
    jpeg_read_header(&jpeg.info, TRUE);
    jpeg.drawn.colors = profile_of(jpeg.info);
    const QSize size(static_cast<int>(jpeg.info.image_width), static_cast<int>(jpeg.info.image_height));
    jpeg.drawn.original = size;
    if (qint64{size.width()} * size.height() > most_pixels) return;
    set_output(jpeg.info, bounds);
    jpeg_start_decompress(&jpeg.info);
    jpeg.drawn.image = QImage(static_cast<int>(jpeg.info.output_width), static_cast<int>(jpeg.info.output_height),
                              QImage::Format_ARGB32_Premultiplied);
    if (jpeg.drawn.image.isNull()) return;
    jpeg.ink.resize(std::size_t{4} * jpeg.info.output_width);
    read_rows(jpeg);
    jpeg_finish_decompress(&jpeg.info);
}

/// Marks the missing rows and counts the others.
void finish(Decompressor& jpeg) {
    Drawn& drawn = jpeg.drawn;
    drawn.cut = jpeg.cut;
    if (jpeg.there == 0) drawn.image = QImage();
    if (drawn.image.isNull()) return;
    for (int row = jpeg.there; row < drawn.image.height(); ++row) {
        std::fill_n(drawn.image.scanLine(row), drawn.image.bytesPerLine(), uchar{0});
    }
    const bool whole = !jpeg.warned && jpeg.there == drawn.image.height();
    drawn.percent = whole ? 100 : std::min(99, 100 * jpeg.good / drawn.image.height());
}

}  // namespace

bool is_jpeg(std::string_view file) {
    return file.starts_with("\xFF\xD8\xFF");
}

Drawn draw_jpeg(std::string_view file, QSize bounds, qint64 most_pixels) {
    Decompressor jpeg;
    if (setjmp(jpeg.fatal) == 0) {
        read_file(jpeg, file, bounds, most_pixels);
    } else {
        jpeg.warned = true;
    }
    finish(jpeg);
    return jpeg.drawn;
}

}  // namespace quill::picture
