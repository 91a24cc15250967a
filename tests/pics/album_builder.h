#pragma once

#include "pics/record.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quill::tests {

/// Builds albums byte by byte, independently of the product's writer.
struct AlbumBuilder {
    using Picture = std::pair<std::string, std::string>;  // name, bytes

    static std::string record(std::string_view name, std::string_view size) {
        std::string out = "Happy" + std::string(name) + "^" + std::string(size);
        out.resize(300, '@');
        return out;
    }

    static std::string plain(const std::vector<Picture>& pictures) {
        std::string out = "PICS_1.1.03.xyz:MULTI.IMAGE.PACK:";
        for (const auto& [name, bytes] : pictures) out += bytes;
        for (auto each = pictures.rbegin(); each != pictures.rend(); ++each) {
            out += record(each->first, std::to_string(each->second.size()));
        }
        return out;
    }

    /// Builds an album in which the thumbnail of the picture `i` is 14,938 times the letter number `i`.
    static std::string with_thumbnails(const std::vector<Picture>& pictures) {
        std::string out = "PICS_1.1.03.abc:MULTI.IMAGE.PACK:";
        for (std::size_t i = 0; i < pictures.size(); ++i) {
            out += record("!R29!" + pictures[i].first + ".bmp", std::to_string(pictures[i].second.size()));
            out.append(14'938, static_cast<char>('a' + i));
        }
        for (const auto& [name, bytes] : pictures) out += bytes;
        return out;
    }

    /// Returns `size` bytes that begin like a JPEG picture.
    static std::string jpeg(std::size_t size, char fill = 'x') {
        std::string out("\xFF\xD8\xFF\xE0\0\x10JFIF\0", 11);
        out.resize(size, fill);
        return out;
    }
};

}  // namespace quill::tests
