#include "picture/icon.h"

#include "picture/fields.h"

#include <QtEndian>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace quill::picture {
namespace {

constexpr std::size_t header_size = 6;
constexpr std::size_t entry_size = 16;
constexpr std::uint32_t largest_icon = 256;  // the largest size that the directory of an icon file can state

struct Entry {
    std::string_view bytes;  ///< of the directory
    std::string_view image;
    unsigned area = 0;
    unsigned bits = 0;
};

unsigned stated(std::uint8_t side) {
    return side == 0 ? largest_icon : side;
}

Entry entry_at(std::string_view file, std::size_t i) {
    const std::string_view bytes = file.substr(header_size + i * entry_size, entry_size);
    const std::size_t offset = long_at(bytes, 12);
    const std::size_t size = long_at(bytes, 8);
    return {bytes, offset < file.size() ? file.substr(offset, size) : std::string_view(),
            stated(byte_at(bytes, 0)) * stated(byte_at(bytes, 1)), word_at(bytes, 6)};
}

/// Returns true for a bitmap no larger than the directory can state: Qt takes its size from either.
bool is_honest_bitmap(std::string_view bitmap) {
    constexpr std::uint32_t header = 40;
    return long_at(bitmap, 0) >= header && long_at(bitmap, 4) <= largest_icon && long_at(bitmap, 8) <= 2 * largest_icon;
}

QByteArray copy_of(std::string_view bytes) {
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

constexpr std::uint32_t largest_masked_header = 124;

/// Returns true for a bitmap whose header states an alpha mask. It needs no second mask.
bool is_masked_bitmap(std::string_view bitmap) {
    const std::uint32_t header = long_at(bitmap, 0);
    return header >= 56 && header <= largest_masked_header && word_at(bitmap, 14) == 32 && long_at(bitmap, 52) != 0;
}

void append_long(QByteArray& out, std::uint32_t value) {
    for (const unsigned shift : {0U, 8U, 16U, 24U}) out.append(static_cast<char>(value >> shift & 0xFFU));
}

/// Returns an icon's bitmap as a bitmap file; its height includes the mask below it.
QByteArray bitmap_file(std::string_view bitmap) {
    constexpr std::uint32_t file_header = 14;
    QByteArray out = "BM";
    append_long(out, file_header + static_cast<std::uint32_t>(bitmap.size()));
    append_long(out, 0);
    append_long(out, file_header + long_at(bitmap, 0));
    out += copy_of(bitmap.substr(0, 8));
    append_long(out, long_at(bitmap, 8) / 2);
    return out + copy_of(bitmap.substr(12));
}

/// Returns an icon file with only this image.
QByteArray alone(std::string_view file, const Entry& entry) {
    QByteArray out = copy_of(file.substr(0, 4)) + QByteArray("\1\0", 2) + copy_of(entry.bytes.substr(0, 12));
    const quint32 offset = qToLittleEndian(static_cast<quint32>(header_size + entry_size));
    out.append(reinterpret_cast<const char*>(&offset), sizeof offset);
    return out + copy_of(entry.image);
}

}  // namespace

unsigned icon_count(std::string_view file) {
    const bool is_icon =
        file.starts_with(std::string_view("\0\0\1\0", 4)) || file.starts_with(std::string_view("\0\0\2\0", 4));
    if (!is_icon || file.size() < header_size + entry_size) return 0;
    const std::size_t room = (file.size() - header_size) / entry_size;
    return static_cast<unsigned>(std::min<std::size_t>(word_at(file, 4), room));
}

QByteArray icon_image(std::string_view file, unsigned index) {
    std::vector<Entry> entries;
    for (unsigned i = 0; i < icon_count(file); ++i) entries.push_back(entry_at(file, i));
    if (index >= entries.size()) return {};
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.area != b.area ? a.area > b.area : a.bits > b.bits;
    });
    const Entry& entry = entries[index];
    if (entry.image.starts_with("\x89PNG")) return copy_of(entry.image);
    if (!is_honest_bitmap(entry.image)) return {};
    return is_masked_bitmap(entry.image) ? bitmap_file(entry.image) : alone(file, entry);
}

}  // namespace quill::picture
