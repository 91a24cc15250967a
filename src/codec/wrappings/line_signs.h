#pragma once

#include <cstddef>
#include <string_view>

/// Facts that a line without its wrapping shows, whatever the format.
namespace quill::codec {

/// Returns true for a line that only occurs at a file's beginning or end: "begin 644 cat.jpg", "=ybegin", "=yend", the
/// line before BinHex.
bool is_data_mark(std::string_view line);

/// Returns true for a full row of data: UUE or XXE of matching length, Base64 or BinHex of a usual width.
bool is_full_row(std::string_view line);

/// Returns true for a field that describes the body after it, or that messages begin with.
bool is_header_line(std::string_view line);

/// Removes the first line from `text`, including its line end: CR LF, LF, CR or CR CR LF.
struct TextLine {
    std::string_view text;
    std::string_view end;
};
TextLine next_line(std::string_view& text);

}  // namespace quill::codec
