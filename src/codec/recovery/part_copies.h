#pragma once

#include "codec/recovery/found_file.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace quill::codec {

/// The choice among the copies of one part.
struct PartCopies {
    std::vector<std::size_t> kept;  ///< of the given files; several if they differ and nothing decides
    std::vector<std::size_t> left_out;
    bool doubtful = false;  ///< one left out is cut off or damaged, not merely a repetition
};

/// Chooses among `copies`, indices into `files`, which claim to be the same part of one file. Copies with the same
/// lines count once; a cut one is dropped in favour of one that continues where it ends, and ones with foreign lines in
/// favour of a clean one. Reads each copy once or twice.
PartCopies choose_copies(std::span<const FoundFile> files, std::span<const std::size_t> copies,
                         std::span<const std::string_view> inputs);

/// Reports, for a joined file, the choice among the copies of its part `number`.
void report_copies(Attachment& attachment, const PartCopies& copies, std::uint32_t number, std::uint64_t at_input);

}  // namespace quill::codec
