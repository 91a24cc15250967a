#pragma once

#include "codec/recovery/file_signature.h"

#include <string_view>

/// Names of icons, as freedesktop.org's icon naming has them.
namespace quill::decoder {

/// Returns the icon of files of a kind.
std::string_view icon_for_kind(codec::FileKind kind);

/// Returns the icon of files that are called like `name`.
std::string_view icon_for_name(std::string_view name);

}  // namespace quill::decoder
