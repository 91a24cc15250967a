#include "codec/wrappings/line_signs.h"
#include "codec/wrappings/rows.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace quill::codec {
namespace {

constexpr std::size_t longest_number = 16;
constexpr std::string_view list_begin = "<?xml";

/// Returns the message in an Apple Mail file: a line with its size in bytes, the message, and a property list.
std::optional<std::string_view> message_in(std::string_view text) {
    std::string_view rest = text;
    const std::string_view number = next_line(rest).text;
    std::size_t size = 0;
    const std::size_t digits = std::min(number.find_last_not_of(' ') + 1, number.size());
    const auto [stop, error] = std::from_chars(number.data(), number.data() + digits, size);
    if (digits == 0 || digits > longest_number || error != std::errc() || stop != number.data() + digits) return {};
    if (size > rest.size() || !rest.substr(size).starts_with(list_begin)) return {};
    return rest.substr(0, size);
}

}  // namespace

bool detect_emlx(const Sample& sample) {
    std::string_view text = sample.first();
    const std::string_view number = next_line(text).text;
    if (number.empty() || number.find_first_not_of("0123456789 ") != std::string_view::npos) return false;
    return is_header_line(next_line(text).text) || !text.empty();
}

void unwrap_emlx(std::string_view wrapped, PlainText& out) {
    out.keep(message_in(wrapped).value_or(wrapped));
}

}  // namespace quill::codec
