#pragma once

#include "codec/attachment.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quill::codec {

/// What a text says of the part of a file that it holds: "Part 002 of 005 of file flower.jpg".
struct PartLabel {
    std::string file;          ///< the file's name, or what is left of a subject without the numbers
    std::uint32_t number = 0;  ///< from 1; 0 where nothing is said
    std::uint32_t total = 0;   ///< 0 where nothing is said

    bool operator==(const PartLabel&) const = default;
};

/// An attachment, or a piece of one whose other pieces lie elsewhere.
struct FoundFile {
    Attachment attachment;    ///< its name not yet made safe, and empty where the text gives none
    std::uint32_t order = 0;  ///< where it stands among all that the text holds
    bool has_begin = true;
    bool has_end = true;
    bool tentative = false;     ///< counts only where the first part of its file, or its label, asks for it
    bool name_guessed = false;  ///< the character set of the name is not stated: a header's name goes before it
    PartLabel label;
    std::string partial_id;  ///< a piece of a message (message/partial): not a file by itself
};

/// Whether the texts of messages are kept, which are many in a mailbox and seldom asked for.
enum class Texts : std::uint8_t { kept, left_out };

/// The most files that are kept of one input, those in its encoded messages included.
constexpr std::size_t most_files = 32'767;

/// All that a scan found.
struct Found {
    std::vector<FoundFile> files;
    std::vector<Problem> problems;  ///< of the text as a whole: limits that were met
};

}  // namespace quill::codec
