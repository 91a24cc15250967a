#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

/// JSON (RFC 8259), one line for each value.
namespace quill::cli {

/// Returns `bytes` as a quoted JSON string (RFC 8259 7). A byte that is not UTF-8 becomes the lone surrogate U+DC80 to
/// U+DCFF of its value, so that different names stay different and a reader can restore the bytes. Characters that
/// would act on a terminal are escaped.
std::string json_string(std::string_view bytes);

/// Returns the JSON string, or null if it is empty.
std::string json_or_null(std::string_view bytes);

std::string json_flag(bool value);

/// Returns an object of these members, whose values are JSON.
std::string json_object(std::initializer_list<std::pair<std::string_view, std::string>> members);

/// Returns the items, each turned to JSON by `turn`, as an array.
template <class Items, class Turn>
std::string json_array(const Items& items, Turn turn) {
    std::string out = "[";
    for (const auto& item : items) {
        if (out.size() > 1) out += ", ";
        out += turn(item);
    }
    return out + "]";
}

}  // namespace quill::cli
