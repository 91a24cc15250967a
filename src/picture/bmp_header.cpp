#include "picture/bmp_header.h"

#include "picture/fields.h"

#include <algorithm>

namespace quill::picture {
namespace {

constexpr std::size_t file_header = 14;
constexpr std::size_t core_header = 12;  // of OS/2 1 and Windows 2
constexpr std::size_t info_header = 40;
constexpr std::size_t with_masks = 52, with_alpha_mask = 56;
constexpr std::size_t alpha_mask_at = file_header + 52;
constexpr std::size_t largest_header = 124;
constexpr int longest_side = 65'535;

enum Compression : std::uint32_t { plain = 0, rle8 = 1, rle4 = 2, bit_fields = 3, alpha_bit_fields = 6 };

/// A header and the sizes that locate its other parts.
struct Head {
    std::size_t size = 0;
    std::uint32_t compression = plain;
    BmpHeader header = {};
};

void read_core(std::string_view file, Head& head) {
    head.header.size = {word_at(file, 18), word_at(file, 20)};
    head.header.bits = word_at(file, 24);
}

void read_info(std::string_view file, Head& head) {
    const auto height = static_cast<std::int32_t>(long_at(file, 22));
    const auto width = static_cast<std::int32_t>(long_at(file, 18));
    if (height == INT32_MIN) return;
    head.header.size = {width, std::abs(height)};
    head.header.from_top = height < 0;
    head.header.bits = word_at(file, 28);
    if (head.size >= 20) head.compression = long_at(file, 30);
}

bool makes_sense(const Head& head) {
    const BmpHeader& header = head.header;
    if (header.size.isEmpty() || header.size.width() > longest_side || header.size.height() > longest_side)
        return false;
    const unsigned bits = header.bits;
    switch (head.compression) {
        case plain:
            return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
        case rle8:
            return bits == 8;
        case rle4:
            return bits == 4;
        case bit_fields:
        case alpha_bit_fields:
            return head.size >= info_header && (bits == 16 || bits == 32);
        default:
            return false;
    }
}

/// Returns the bytes between the header and the palette: masks that do not fit in the header.
std::size_t masks_after(const Head& head) {
    if (head.size >= with_masks) return 0;
    return head.compression == bit_fields ? 12 : head.compression == alpha_bit_fields ? 16 : 0;
}

void read_masks(std::string_view file, Head& head) {
    auto& masks = head.header.masks;
    if (head.compression == plain) {
        masks = {0xFF0000, 0xFF00, 0xFF, 0};
        if (head.header.bits == 16) masks = {0x7C00, 0x3E0, 0x1F, 0};
        if (head.header.bits == 32 && head.size >= with_alpha_mask)
            masks[3] = long_at(file, alpha_mask_at) & 0xFF000000;
        return;
    }
    const bool has_alpha = head.size >= with_alpha_mask || masks_after(head) == 16;
    const std::uint32_t all = head.header.bits == 16 ? 0xFFFFU : 0xFFFFFFFFU;
    for (std::size_t i = 0; i < (has_alpha ? 4U : 3U); ++i) {
        masks[i] = long_at(file, file_header + info_header + 4 * i) & all;
    }
}

/// Reads the palette: as many colors as fit before the pixels.
void read_palette(std::string_view file, Head& head) {
    const std::size_t each = head.size == core_header ? 3 : 4;
    const std::size_t begin = file_header + head.size + masks_after(head);
    const std::size_t most = std::size_t{1} << head.header.bits;
    const std::size_t room = head.header.data_at > begin ? (head.header.data_at - begin) / each : most;
    const std::size_t stated = head.size >= info_header ? long_at(file, 46) : 0;
    const std::size_t count = std::min({most, room, stated == 0 ? most : stated});
    for (std::size_t at = begin; head.header.palette.size() < count; at += each) {
        head.header.palette.push_back(qRgb(byte_at(file, at + 2), byte_at(file, at + 1), byte_at(file, at)));
    }
    // Some writers give the offset of the pixels without the palette.
    head.header.data_at = std::max(head.header.data_at, begin + count * each);
}

}  // namespace

std::optional<BmpHeader> read_bmp_header(std::string_view file) {
    Head head;
    head.size = long_at(file, file_header);
    if (head.size != core_header && (head.size < 16 || head.size > largest_header)) return std::nullopt;
    if (head.size == core_header) {
        read_core(file, head);
    } else {
        read_info(file, head);
    }
    if (!makes_sense(head)) return std::nullopt;
    head.header.data_at = long_at(file, 10);
    head.header.packing = head.compression == rle8   ? BmpHeader::Packing::rle8
                          : head.compression == rle4 ? BmpHeader::Packing::rle4
                                                     : BmpHeader::Packing::none;
    read_masks(file, head);
    if (head.header.bits <= 8) read_palette(file, head);
    return head.header;
}

}  // namespace quill::picture
