#pragma once

#include "codec/uu/uu.h"

#include <cstddef>
#include <string_view>

namespace quill::codec::uu {

/// How a line's length matches its length character.
enum class Fit : unsigned char {
    exact,     ///< all groups, nothing after them
    extra,     ///< all groups, and one to three extra characters: a check character, blanks
    unpadded,  ///< the last group lacks characters without data
    stripped,  ///< too short: blanks at its end are lost, or characters
    none       ///< not a data line
};

/// A line of data as found: `bytes` of result from its length character, and how much of its text is present.
struct DataLine {
    Fit fit = Fit::none;
    std::size_t bytes = 0;      ///< 0 for the line that ends the data
    std::size_t expected = 0;   ///< characters of all groups, without the length character
    bool blanks_after = false;  ///< blanks follow the data, and nothing else
    bool clean = true;          ///< every character that counts is in the alphabet
};

/// Characters that transports add to the ends of lines.
constexpr std::string_view blanks{" \t\0", 3};

/// Examines a line without its line end.
DataLine judge(Alphabet alphabet, std::string_view line);

/// Returns the characters of the groups for `bytes` bytes.
constexpr std::size_t characters_for(std::size_t bytes) {
    return (bytes + 2) / 3 * 4;
}

/// The value of the length character for the full lines that encoders write: 45 bytes.
constexpr std::size_t full_line = 45;

}  // namespace quill::codec::uu
