#pragma once

#include <string>
#include <string_view>

namespace quill::decoder {

/// What the program itself sees in a file that it could not decode, for a person: what was looked for, what was seen
/// (line lengths, first lines, characters outside the alphabets), why it could not go on and what to try next. Plain
/// sentences in paragraphs, lines ended by '\n'. Looks at the first 16 MiB of `bytes`.
std::string diagnosis_text(std::string_view bytes);

}  // namespace quill::decoder
