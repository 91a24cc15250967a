#include "htx/book/book_geometry.h"

#include "text/reader.h"
#include "text/writer.h"

#include <array>
#include <charconv>
#include <cmath>

namespace quill::htx {
namespace {

std::string number_text(float number) {
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed).ptr;
    return {buffer.data(), end};
}

/// Returns the number at the beginning of the field; 0 if there is none, or one larger than any screen.
float number_of(std::string_view field) {
    constexpr float most = 10'000'000;
    if (field.starts_with('+')) field.remove_prefix(1);
    float number = 0;
    std::from_chars(field.data(), field.data() + field.size(), number);
    return std::isfinite(number) && std::fabs(number) <= most ? number : 0;
}

void fit(float& begin, float& size, float screen_begin, float screen_size) {
    if (begin + size > screen_begin + screen_size) {
        const bool too_large = size > screen_size;
        if (too_large) size = screen_size;
        begin = screen_begin + screen_size - size;
    }
    if (begin < screen_begin) begin = screen_begin;
}

/// The length that two stretches have in common.
float common_length(float begin, float length, float other_begin, float other_length) {
    return std::max(0.0F, std::min(begin + length, other_begin + other_length) - std::max(begin, other_begin));
}

}  // namespace

std::string format_geometry(const BookGeometry& geometry) {
    std::string out;
    for (const float number : {geometry.width, geometry.height, geometry.top, geometry.left}) {
        text::append_line(out, number_text(std::isfinite(number) ? number : 0));
    }
    return out;
}

BookGeometry parse_geometry(std::string_view text) {
    BookGeometry geometry;
    text::Reader reader{text::Source(text)};
    for (float* const number : {&geometry.width, &geometry.height, &geometry.top, &geometry.left}) {
        *number = number_of(reader.field().value_or(""));
    }
    return geometry;
}

BookGeometry fit_to_screen(BookGeometry geometry, const ScreenArea& screen) {
    fit(geometry.left, geometry.width, screen.left, screen.width);
    fit(geometry.top, geometry.height, screen.top, screen.height);
    // Again: a window that began left of the screen may now extend beyond its right edge.
    fit(geometry.left, geometry.width, screen.left, screen.width);
    fit(geometry.top, geometry.height, screen.top, screen.height);
    return geometry;
}

BookGeometry fit_to_screens(const BookGeometry& geometry, const std::vector<ScreenArea>& screens) {
    const ScreenArea* best = nullptr;
    float most = -1;
    for (const ScreenArea& screen : screens) {
        const float width = common_length(geometry.left, geometry.width, screen.left, screen.width);
        const float area = width * common_length(geometry.top, geometry.height, screen.top, screen.height);
        if (area <= most) continue;
        most = area;
        best = &screen;
    }
    return best == nullptr ? geometry : fit_to_screen(geometry, *best);
}

}  // namespace quill::htx
