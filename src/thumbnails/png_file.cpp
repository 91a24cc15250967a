#include "thumbnails/png_file.h"

#include "checksum/checksum.h"

#include <libdeflate.h>

#include <cstdint>
#include <memory>

namespace quill::thumbnails {
namespace {

constexpr std::string_view signature = "\x89PNG\r\n\x1A\n";
constexpr std::size_t around_data = 12;  // bytes of a chunk: length, type; CRC

std::string number(std::uint32_t value) {
    std::string bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) bytes += static_cast<char>(value >> shift & 0xFFU);
    return bytes;
}

std::uint32_t number_at(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(at, 4)) value = value << 8U | static_cast<unsigned char>(byte);
    return value;
}

std::string chunk(std::string_view type, std::string_view data) {
    const std::string body = std::string(type).append(data);
    return number(static_cast<std::uint32_t>(data.size())) + body + number(crc32(0, body));
}

/// Returns a color with its alpha divided out.
char plain_channel(std::uint32_t pixel, unsigned shift) {
    const std::uint32_t alpha = pixel >> 24U, value = pixel >> shift & 0xFFU;
    return static_cast<char>(alpha == 0 ? 0U : std::min((value * 255 + alpha / 2) / alpha, 255U));
}

/// Returns the rows in PNG form: a byte 0 for "not filtered", then red, green, blue and alpha of each pixel.
std::string rows_of(const platform::Pixels& pixels) {
    std::string rows;
    for (int y = 0; y < pixels.size.height; ++y) {
        const auto* const row =
            reinterpret_cast<const std::uint32_t*>(pixels.bytes.get() + pixels.stride * static_cast<std::size_t>(y));
        rows += '\0';
        for (int x = 0; x < pixels.size.width; ++x) {
            for (const unsigned shift : {16U, 8U, 0U}) rows += plain_channel(row[x], shift);
            rows += static_cast<char>(row[x] >> 24U);
        }
    }
    return rows;
}

std::string compressed(const std::string& data) {
    constexpr int quick = 3;
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(quick), &libdeflate_free_compressor);
    if (!compressor) return {};
    std::string out(libdeflate_zlib_compress_bound(compressor.get(), data.size()), '\0');
    out.resize(libdeflate_zlib_compress(compressor.get(), data.data(), data.size(), out.data(), out.size()));
    return out;
}

}  // namespace

std::string png_of(const platform::Pixels& pixels, const std::vector<PngText>& texts) {
    constexpr std::string_view eight_bits_with_alpha("\x08\x06\0\0\0", 5);
    std::string png(signature);
    png += chunk("IHDR", number(static_cast<std::uint32_t>(pixels.size.width)) +
                             number(static_cast<std::uint32_t>(pixels.size.height)).append(eight_bits_with_alpha));
    for (const auto& [key, value] : texts) png += chunk("tEXt", std::string(key) + '\0' + value);
    return png + chunk("IDAT", compressed(rows_of(pixels))) + chunk("IEND", {});
}

std::optional<std::string_view> text_in(std::string_view png, std::string_view key) {
    if (!png.starts_with(signature)) return std::nullopt;
    for (std::size_t at = signature.size(); at + around_data <= png.size();) {
        const std::uint64_t size = number_at(png, at);
        if (size > png.size() - at - around_data) break;
        const std::string_view data = png.substr(at + 8, size);
        const bool is_text = png.substr(at + 4, 4) == "tEXt";
        if (is_text && data.size() > key.size() && data.starts_with(key) && data[key.size()] == '\0') {
            return data.substr(key.size() + 1);
        }
        at += around_data + size;
    }
    return std::nullopt;
}

}  // namespace quill::thumbnails
