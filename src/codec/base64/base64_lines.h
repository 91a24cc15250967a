#pragma once

#include "codec/scan/text_scan.h"

#include <string>
#include <string_view>

namespace quill::codec {

/// Base64 text that is decoded as a whole; characters that are no Base64 end it.
std::string decode_base64_text(std::string_view encoded);

/// Reads the lines behind a "begin-base64" line up to "====" and adds them as `file`. With `sure` false the first line
/// has to be Base64; false, and nothing read, where it isn't.
bool open_base64_lines(TextScan& scan, FoundFile file, bool sure);

/// Whether every character of `line` is of the Base64 alphabet, but up to two '=' at its end and blanks behind them.
bool is_base64_line(std::string_view line);

/// Returns true where `line` may be a row of Base64 that was damaged.
bool is_nearly_base64(std::string_view line);

/// Whether Base64, or the "====" behind it, goes on within a few lines from `at`.
bool base64_resumes(const TextScan& scan, Position at);

}  // namespace quill::codec
