#pragma once

#include "codec/attachment.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace quill::codec {

/// Returns the problem of `name`, as found in a message, if it disguises a program: blanks that push its extension out
/// of sight, characters that reverse the direction of writing or are invisible, or the extension of a document before
/// its own. `at_input` is the beginning of the file's data.
std::optional<Problem> disguise_of(std::string_view name, std::uint64_t at_input);

}  // namespace quill::codec
