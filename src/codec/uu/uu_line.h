#pragma once

#include "codec/uu/uu.h"

#include <cstddef>
#include <string_view>

namespace quill::codec::uu {

/// How a line's length agrees with its length character.
enum class Fit : unsigned char {
    exact,     ///< all groups, nothing behind them
    extra,     ///< all groups, and one to three characters more: a check character, blanks
    unpadded,  ///< the last group lacks characters that hold no data
    stripped,  ///< too short: blanks at its end are lost, or characters
    none       ///< no data line
};

/// A line of data as it stands: `bytes` of result from its length character, and how much of its text is there for it.
struct DataLine {
    Fit fit = Fit::none;
    std::size_t bytes = 0;      ///< 0 for the line that ends the data
    std::size_t expected = 0;   ///< characters of all groups, the length character not among them
    bool blanks_after = false;  ///< blanks follow the data, and nothing else
    bool clean = true;          ///< every character that counts is of the alphabet
};

/// What transports add to the ends of lines.
constexpr std::string_view blanks{" \t\0", 3};

/// Judges a line without its line end.
DataLine judge(Alphabet alphabet, std::string_view line);

/// Characters of the groups that hold `bytes` bytes.
constexpr std::size_t characters_for(std::size_t bytes) {
    return (bytes + 2) / 3 * 4;
}

/// The value of the length character for the full lines that encoders write: 45 bytes.
constexpr std::size_t full_line = 45;

}  // namespace quill::codec::uu
