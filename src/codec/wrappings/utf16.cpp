#include "codec/wrappings/rows.h"
#include "text/utf8.h"

#include <algorithm>
#include <optional>
#include <string>

namespace quill::codec {
namespace {

enum class Order : std::uint8_t { little, big };

constexpr std::size_t sampled_units = 128;
constexpr std::string_view yenc_begin = "=ybegin ";

std::uint32_t unit_at(std::string_view text, std::size_t at, Order order) {
    const std::uint32_t first = static_cast<unsigned char>(text[at]);
    const std::uint32_t second = static_cast<unsigned char>(text[at + 1]);
    return order == Order::little ? first | second << 8U : first << 8U | second;
}

/// Returns true if nearly all of the first units are characters of one byte, and most of them ASCII.
bool looks_like_text(std::string_view text, Order order) {
    std::size_t single = 0;
    std::size_t ascii = 0;
    std::size_t units = 0;
    for (std::size_t at = 0; at + 1 < text.size() && units < sampled_units; at += 2, ++units) {
        const std::uint32_t unit = unit_at(text, at, order);
        single += unit > 0 && unit < 0x100 ? 1U : 0U;
        ascii += (unit >= 0x20 && unit < 0x7F) || unit == '\r' || unit == '\n' || unit == '\t' ? 1U : 0U;
    }
    return units >= 8 && single * 10 >= units * 9 && ascii * 2 >= units;
}

std::optional<Order> order_of(std::string_view text) {
    if (text.starts_with("\xFF\xFE")) return Order::little;
    if (text.starts_with("\xFE\xFF")) return Order::big;
    if (looks_like_text(text, Order::little)) return Order::little;
    if (looks_like_text(text, Order::big)) return Order::big;
    return std::nullopt;
}

/// The encoding of characters from 128 as bytes, which the wrapped text does not state.
enum class Bytes : std::uint8_t { utf8, one };

/// Returns the encoding: rows of yEnc are made of single bytes, one for each character.
Bytes bytes_of(std::string_view text, Order order) {
    std::string beginning;
    for (std::size_t at = 0; at + 1 < text.size() && beginning.size() < Sample::beginning; at += 2) {
        const std::uint32_t unit = unit_at(text, at, order);
        beginning.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    return beginning.find(yenc_begin) == std::string::npos ? Bytes::utf8 : Bytes::one;
}

/// Returns the character at `at` and sets `size` to its bytes.
std::uint32_t read_character(std::string_view text, std::size_t at, Order order, std::size_t& size) {
    const std::uint32_t high = unit_at(text, at, order);
    size = 2;
    if (high < 0xD800 || high > 0xDFFF) return high;
    const bool pair = high < 0xDC00 && at + 3 < text.size();
    const std::uint32_t low = pair ? unit_at(text, at + 2, order) : 0;
    if (low < 0xDC00 || low > 0xDFFF) return 0xFFFD;
    size = 4;
    return 0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00);
}

std::string bytes_of(char32_t character, Bytes bytes) {
    std::string out;
    text::append_utf8(out, character);
    if (bytes == Bytes::utf8) return out;
    if (character < 0x100) return {static_cast<char>(character)};
    for (unsigned byte = 0x80; byte < 0xA0; ++byte) {
        const std::string single(1, static_cast<char>(byte));
        if (text::windows_1252_to_utf8(single) == out) return single;
    }
    return out;
}

}  // namespace

bool detect_utf16(const Sample& sample) {
    return order_of(sample.first()).has_value();
}

void unwrap_utf16(std::string_view wrapped, PlainText& out) {
    const std::optional<Order> order = order_of(wrapped);
    if (!order) return;
    const Bytes bytes = bytes_of(wrapped, *order);
    std::size_t at = unit_at(wrapped, 0, *order) == 0xFEFF ? 2 : 0;
    std::string run;
    std::size_t run_begin = at;
    const auto end_run = [&] {
        out.add(run, run_begin, Pace::two_bytes);
        run.clear();
    };
    while (at + 1 < wrapped.size() && !out.stopped()) {
        std::size_t size = 0;
        const std::uint32_t character = read_character(wrapped, at, *order, size);
        if (run.empty()) run_begin = at;
        if (character < 0x80) {
            run.push_back(static_cast<char>(character));
            if (run.size() >= 4096) end_run();
        } else {
            end_run();
            out.set_guessed(true);
            out.add(bytes_of(character, bytes), at);
            out.set_guessed(false);
        }
        at += size;
    }
    end_run();
}

}  // namespace quill::codec
