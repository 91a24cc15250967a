#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Picture albums (`.pics`): many picture files in one, without compression; docs/formats/pics.md describes every byte.
namespace quill::pics {

/// The contents of an album besides its pictures; the header names it in three letters.
enum class Form : std::uint8_t {
    plain,           ///< "xyz": pictures, then the directory, last picture first
    with_thumbnails  ///< "abc": records and thumbnails in turns, then the pictures
};

constexpr std::string_view header_start = "PICS_1.1.03.";
constexpr std::string_view magic = header_start.substr(0, 5);  ///< all that a reader checks, besides the form
constexpr std::string_view header_end = ":MULTI.IMAGE.PACK:";
constexpr std::size_t form_at = header_start.size();
constexpr std::size_t form_size = 3;
constexpr std::size_t header_size = header_start.size() + form_size + header_end.size();

constexpr std::string_view record_tag = "Happy";
constexpr char record_separator = '^';
constexpr char record_padding = '@';
constexpr std::size_t record_size = 300;
constexpr std::size_t record_text_size = 298;  ///< bytes that a record may use

constexpr std::string_view thumbnail_prefix = "!R29!";
constexpr std::string_view thumbnail_suffix = ".bmp";
constexpr int thumbnail_width = 81;
constexpr int thumbnail_height = 61;
constexpr std::size_t thumbnail_size = 14'938;  ///< a BMP file of 24 bits a pixel
constexpr std::size_t unit_size = record_size + thumbnail_size;

/// Limits of the oldest readers: they count in 16 bits and measure in 31.
constexpr std::size_t most_pictures_of_old_readers = 9'999;
constexpr std::uint64_t most_bytes_of_old_readers = 0x7FFF'FFFF;

}  // namespace quill::pics
