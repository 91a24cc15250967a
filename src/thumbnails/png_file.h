#pragma once

#include "platform/pictures.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quill::thumbnails {

/// A key and its value (PNG, tEXt).
using PngText = std::pair<std::string_view, std::string>;

/// Returns a PNG file of `pixels`, with their alpha and these texts.
std::string png_of(const platform::Pixels& pixels, const std::vector<PngText>& texts);

/// Returns the first text of a PNG file under `key`; nullopt if there is none or it is not a PNG. Reads no compressed
/// text.
std::optional<std::string_view> text_in(std::string_view png, std::string_view key);

}  // namespace quill::thumbnails
