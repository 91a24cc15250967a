#include "htx/picture_book/exif_description.h"

#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace quill::htx {
namespace {

constexpr std::size_t longest = 1000;  // bytes of a description that are used

/// TIFF data, whose numbers are in the byte order that its first two bytes indicate.
class Tiff {
  public:
    explicit Tiff(std::string_view bytes) : bytes_(bytes), big_(bytes.starts_with("MM")) {}

    bool is_tiff() const { return (big_ || bytes_.starts_with("II")) && number(2, 2) == 42U; }

    /// Returns the unsigned number of `size` bytes at `offset`; nullopt beyond the end.
    std::optional<std::uint32_t> number(std::size_t offset, std::size_t size) const {
        if (offset > bytes_.size() || bytes_.size() - offset < size) return std::nullopt;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            const auto byte = static_cast<std::uint8_t>(bytes_[offset + (big_ ? i : size - 1 - i)]);
            value = value << 8U | byte;
        }
        return value;
    }

    /// Returns the text of the entry at `offset` in a directory; empty if it has none.
    std::string_view text_of_entry(std::size_t offset) const {
        constexpr std::uint32_t ascii = 2, in_entry = 4;
        const auto type = number(offset + 2, 2), count = number(offset + 4, 4);
        if (type != ascii || !count) return {};
        const auto at = *count <= in_entry ? static_cast<std::uint32_t>(offset + 8) : number(offset + 8, 4);
        if (!at || *at >= bytes_.size()) return {};
        const std::string_view text = bytes_.substr(*at, *count);
        return text.substr(0, text.find('\0'));
    }

  private:
    std::string_view bytes_;
    bool big_;
};

std::string_view description_in(std::string_view bytes) {
    const Tiff tiff(bytes);
    if (!tiff.is_tiff()) return {};
    constexpr std::size_t entry_size = 12;
    constexpr std::uint32_t image_description = 270;
    const std::size_t directory = tiff.number(4, 4).value_or(UINT32_MAX);
    const std::size_t entries = tiff.number(directory, 2).value_or(0);
    for (std::size_t i = 0; i < entries; ++i) {
        const std::size_t entry = directory + 2 + i * entry_size;
        const auto tag = tiff.number(entry, 2);
        if (!tag) return {};
        if (*tag == image_description) return tiff.text_of_entry(entry);
    }
    return {};
}

/// Returns the EXIF data in the segments of a JPEG file (EXIF 2.3, 4.7.2); empty if there is none.
std::string_view exif_data(std::string_view jpeg) {
    constexpr std::string_view start = "\xFF\xD8", exif = {"Exif\0\0", 6};
    constexpr char app1 = '\xE1', scan = '\xDA', end = '\xD9';
    constexpr std::size_t marker_size = 2;
    if (!jpeg.starts_with(start)) return {};
    jpeg.remove_prefix(start.size());
    while (jpeg.size() >= marker_size + 2 && jpeg[0] == '\xFF' && jpeg[1] != scan && jpeg[1] != end) {
        const std::size_t length = static_cast<std::uint8_t>(jpeg[2]) * 256U + static_cast<std::uint8_t>(jpeg[3]);
        const std::string_view segment = jpeg.substr(marker_size, length);
        if (length < 2 || segment.size() < length) return {};
        if (jpeg[1] == app1 && segment.substr(2).starts_with(exif)) return segment.substr(2 + exif.size());
        jpeg.remove_prefix(marker_size + length);
    }
    return {};
}

}  // namespace

std::string exif_description(std::string_view jpeg) {
    std::string line = text::to_utf8(description_in(exif_data(jpeg)).substr(0, longest));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c >= 0 && c < ' '; }, ' ');
    const std::string_view trimmed = text::trim(line);
    return text::ends_with_ignoring_case(trimmed, "digital camera") ? std::string() : std::string(trimmed);
}

}  // namespace quill::htx
