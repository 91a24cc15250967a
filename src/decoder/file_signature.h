#pragma once

#include <cstddef>
#include <string_view>

namespace quill::decoder {

/// Bytes by which files of one type are known.
struct FileSignature {
    std::string_view bytes;
    std::size_t offset;          ///< where they stand in the file
    std::string_view what;       ///< "a JPEG picture"
    std::string_view extension;  ///< usual ending of the name, with its dot
    std::string_view icon;       ///< name of the type's icon (freedesktop.org icon naming)
};

constexpr std::size_t longest_signature = 265;  ///< bytes of a file's beginning that hold every signature

/// The signature that `beginning`, the first bytes of a file, bears; nullptr where it is none of those known.
const FileSignature* signature_of(std::string_view beginning);

/// The icon of files that are called like `name`.
std::string_view icon_for_name(std::string_view name);

constexpr std::string_view picture_icon = "image-x-generic";

}  // namespace quill::decoder
