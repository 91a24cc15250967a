#pragma once

#include "codec/recovery/found_file.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace quill::codec {

/// What became of the copies of one part.
struct PartCopies {
    std::vector<std::size_t> kept;  ///< of the files that were given; several where they differ and nothing decides
    std::vector<std::size_t> left_out;
    bool doubtful = false;  ///< one that is left out is cut off or damaged, and not only the same once more
};

/// Chooses among `copies`, indices into `files`, which state that they are one part of one file. Copies with the same
/// lines count once; one that is cut off gives way to one that goes on where it ends, and ones that hold foreign lines
/// to a clean one. Reads each copy once or twice.
PartCopies choose_copies(std::span<const FoundFile> files, std::span<const std::size_t> copies,
                         std::span<const std::string_view> inputs);

/// Reports, for a joined file, what became of the copies of its part `number`.
void report_copies(Attachment& attachment, const PartCopies& copies, std::uint32_t number, std::uint64_t at_input);

}  // namespace quill::codec
