#pragma once

#include "codec/scan/text_scan.h"

#include <string>
#include <string_view>

namespace quill::codec {

/// Decodes Base64 text as a whole; ends at the first character that is not Base64.
std::string decode_base64_text(std::string_view encoded);

/// Reads the lines after a "begin-base64" line up to "====" and adds them as `file`. With `sure` false the first line
/// must be Base64; otherwise returns false without reading.
bool open_base64_lines(TextScan& scan, FoundFile file, bool sure);

/// Returns true if every character of `line` is in the Base64 alphabet, except for up to two '=' at its end and blanks
/// after them.
bool is_base64_line(std::string_view line);

/// Returns true if `line` may be a damaged row of Base64.
bool is_nearly_base64(std::string_view line);

/// Returns true if Base64, or the "====" after it, continues within a few lines from `at`.
bool base64_resumes(const TextScan& scan, Position at);

}  // namespace quill::codec
