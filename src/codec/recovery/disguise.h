#pragma once

#include "codec/attachment.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace quill::codec {

/// What is to be said of `name`, as it came out of a message, where it makes a program look like something else: blanks
/// that push its extension out of sight, characters that turn the direction of writing or are not seen, or the
/// extension of a document before its own. `at_input` is where the file's data begins.
std::optional<Problem> disguise_of(std::string_view name, std::uint64_t at_input);

}  // namespace quill::codec
