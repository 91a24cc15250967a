#include "pics/record.h"

#include "text/utf8.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>

namespace quill::pics {
namespace {

std::optional<std::uint64_t> number(std::string_view digits) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return value;
}

std::unordered_map<char32_t, char> make_windows_1252() {
    std::unordered_map<char32_t, char> table;
    for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
        const char character = static_cast<char>(byte);
        const std::string utf8 = text::windows_1252_to_utf8({&character, 1});
        std::string_view rest = utf8;
        table[text::next_character(rest)] = character;
    }
    return table;
}

/// Returns the byte of Windows-1252 for a character; nullopt if there is none.
std::optional<char> windows_1252(char32_t character) {
    static const std::unordered_map<char32_t, char> table = make_windows_1252();
    if (character < 0x80) return static_cast<char>(character);
    const auto found = table.find(character);
    if (found == table.end()) return std::nullopt;
    return found->second;
}

}  // namespace

std::optional<Record> parse_record(std::string_view slot) {
    if (slot.size() < record_size - 1 || !slot.starts_with(record_tag)) return std::nullopt;
    const std::string_view text = slot.substr(0, record_text_size);
    const std::string_view content =
        text.substr(0, text.find_last_not_of(record_padding) + 1).substr(record_tag.size());
    const std::size_t separator =
        content.size() < 2 ? content.npos : content.rfind(record_separator, content.size() - 2);
    Record record;
    if (separator == content.npos) {
        record.stored_name = content;
        return record;
    }
    record.stored_name = content.substr(0, separator);
    record.size = number(content.substr(separator + 1));
    const std::string_view padding = slot.substr(record_text_size, record_size - record_text_size);
    record.strict =
        record.size && !record.stored_name.empty() && padding.find_first_not_of(record_padding) == padding.npos;
    return record;
}

std::string make_record(std::string_view stored_name, std::uint64_t size) {
    std::string record(record_tag);
    record.append(stored_name).append(1, record_separator).append(std::to_string(size));
    record.resize(record_size, record_padding);
    return record;
}

std::string thumbnail_name(std::string_view name) {
    return std::string(thumbnail_prefix).append(name).append(thumbnail_suffix);
}

std::string_view picture_name(std::string_view thumbnail_name) {
    constexpr std::size_t around = thumbnail_prefix.size() + thumbnail_suffix.size();
    if (thumbnail_name.size() < around) return thumbnail_name;
    return thumbnail_name.substr(thumbnail_prefix.size(), thumbnail_name.size() - around);
}

std::string stored_text(std::string_view file_name) {
    if (!text::is_utf8(file_name)) return std::string(file_name);
    std::string out;
    for (std::string_view rest = file_name; !rest.empty();) {
        const std::optional<char> byte = windows_1252(text::next_character(rest));
        if (!byte) return std::string(file_name);
        out += *byte;
    }
    return text::to_utf8(out) == file_name ? out : std::string(file_name);
}

}  // namespace quill::pics
