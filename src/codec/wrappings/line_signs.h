#pragma once

#include <cstddef>
#include <string_view>

/// What a line without its wrapping shows, whatever the format.
namespace quill::codec {

/// Returns true for a line that only a file's beginning or end has: "begin 644 cat.jpg", "=ybegin", "=yend", the line
/// before BinHex.
bool is_data_mark(std::string_view line);

/// Returns true for a full row of data: UUE or XXE whose length fits, Base64 or BinHex as wide as encoders make it.
bool is_full_row(std::string_view line);

/// Returns true for a field that says what the body after it is, or that messages begin with.
bool is_header_line(std::string_view line);

/// Takes the first line off `text`, its line end included: CR LF, LF, CR or CR CR LF.
struct TextLine {
    std::string_view text;
    std::string_view end;
};
TextLine next_line(std::string_view& text);

}  // namespace quill::codec
