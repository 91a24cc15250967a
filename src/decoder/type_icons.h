#pragma once

#include "codec/recovery/file_signature.h"

#include <string_view>

/// Icon names of the freedesktop.org icon naming.
namespace quill::decoder {

/// Returns the icon for files of a kind.
std::string_view icon_for_kind(codec::FileKind kind);

/// Returns the icon for files with a name like `name`.
std::string_view icon_for_name(std::string_view name);

}  // namespace quill::decoder
