#pragma once

#include <string_view>

namespace quill::zip {

/// Two readings of the same bytes above 127.
enum class Reading { western, russian };

/// Returns how likely a name of that language is the one written in `utf8`, as the logarithm to base 2: by how often
/// each letter occurs, and by how many letters are ASCII. What follows the last dot does not count. Sums of names
/// compare the two readings.
double likelihood(std::string_view utf8, Reading reading);

}  // namespace quill::zip
