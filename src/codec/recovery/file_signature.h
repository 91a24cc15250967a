#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The types of files that are recognised by their bytes. This is the only table: names, icons, previews and
/// explanations all come from it.
namespace quill::codec {

enum class FileKind : std::uint8_t { picture, archive, sound, video, document, program, text };

/// Bytes at a fixed place of a file.
struct Mark {
    std::size_t offset = 0;
    std::string_view bytes = {};
};

/// The common bytes of all files of one type. Two bytes alone are never a signature: too many other files have them.
struct FileSignature {
    Mark mark;
    Mark second;  ///< empty if one mark is enough
    FileKind kind;
    std::string_view extension;  ///< the usual one, with its dot
    std::string_view what;       ///< "a JPEG picture"
};

constexpr std::size_t longest_signature = 262;  ///< bytes of a file's beginning that contain every signature

/// Returns the signature of a file that begins with `beginning`, or nullptr for an unknown type. Signatures of kind
/// `text` are only the usual beginning of such texts.
const FileSignature* signature_of(std::string_view beginning);

}  // namespace quill::codec
