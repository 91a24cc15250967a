#include "zip/member_rows.h"

#include "text/ascii.h"

#include <cmath>

namespace quill::zip {

int percent_saved(std::int64_t uncompressed_size, std::int64_t compressed_size) {
    if (uncompressed_size <= 0 || compressed_size >= uncompressed_size) return 0;
    const auto size = static_cast<double>(uncompressed_size);
    return static_cast<int>(std::nearbyint((size - static_cast<double>(compressed_size)) * 100 / size));
}

std::string member_row(const ZipItemInfo& info) {
    constexpr std::size_t shown_of_time = 15;
    std::string row = info.dateTime.substr(0, shown_of_time);
    row += '\t' + std::to_string(info.compressedSize) + '\t' + std::to_string(info.uncompressedSize) + '\t';
    row += std::to_string(percent_saved(info.uncompressedSize, info.compressedSize)) + "%\t";
    return row + text::to_lower(std::string_view(info.fileName).substr(0, info.fileName.find('\0')));
}

std::string name_in_row(std::string_view row) {
    return std::string(row.substr(row.rfind('\t') + 1));
}

std::string grouped(std::uint64_t number) {
    if (number == 0) return {};
    std::string out = std::to_string(number);
    for (std::size_t at = out.size(); at > 3;) out.insert(at -= 3, ",");
    return out;
}

}  // namespace quill::zip
