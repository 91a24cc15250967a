#pragma once

#include "codec/attachment.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quill::codec {

/// The description of the part of a file that a text contains: "Part 002 of 005 of file flower.jpg".
struct PartLabel {
    std::string file;          ///< the file's name, or the subject without the numbers
    std::uint32_t number = 0;  ///< from 1; 0 if not stated
    std::uint32_t total = 0;   ///< 0 if not stated

    bool operator==(const PartLabel&) const = default;
};

/// An attachment, or a piece of one whose other pieces are elsewhere.
struct FoundFile {
    Attachment attachment;    ///< its name not yet made safe, and empty if the text has none
    std::uint32_t order = 0;  ///< its position among everything found in the text
    bool has_begin = true;
    bool has_end = true;
    bool tentative = false;     ///< counts only if the first part of its file, or its label, asks for it
    bool name_guessed = false;  ///< the character set of the name is not stated: a header's name is preferred
    PartLabel label;
    std::string partial_id;  ///< a piece of a message (message/partial): not a file by itself
};

/// Whether to keep the texts of messages, which are many in a mailbox and rarely needed.
enum class Texts : std::uint8_t { kept, left_out };

/// The most files kept of one input, including those in its encoded messages.
constexpr std::size_t most_files = 32'767;

/// The result of a scan.
struct Found {
    std::vector<FoundFile> files;
    std::vector<Problem> problems;  ///< of the text as a whole: limits reached
};

}  // namespace quill::codec
