#pragma once

#include <string_view>

namespace quill::zip {

/// Two readings of the same bytes above 127.
enum class Reading { western, russian };

/// Returns how likely `utf8` is a name in that language, as the logarithm to base 2: by the frequency of each letter,
/// and by the share of ASCII letters. Ignores the part after the last dot. Sums of names compare the two readings.
double likelihood(std::string_view utf8, Reading reading);

}  // namespace quill::zip
