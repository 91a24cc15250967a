#include "zip/member_rows.h"

#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <wctype.h>

namespace quill::zip {
namespace {

/// Converts letters of every script, not only A to Z: rows are only displayed, no file is found by them.
std::string lower_case(std::string_view name) {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (unicode == nullptr || std::all_of(name.begin(), name.end(), [](char c) { return (c & '\x80') == 0; })) {
        return text::to_lower(name);
    }
    const std::string utf8 = text::to_utf8(name);
    std::string out;
    for (std::string_view rest = utf8; !rest.empty();) {
        const auto character = static_cast<wint_t>(text::next_character(rest));
        text::append_utf8(out, static_cast<char32_t>(towlower_l(character, unicode)));
    }
    return out;
}

}  // namespace

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
    return row + lower_case(std::string_view(info.fileName).substr(0, info.fileName.find('\0')));
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
