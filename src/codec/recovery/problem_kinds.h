#pragma once

#include "codec/attachment.h"

#include <cstdint>

namespace quill::codec {

/// Returns true where people must hear of the problem: where bytes of the result are wrong, doubtful or missing, and
/// where the input was understood but something of it was left out or the sender's own check was of no use. Other
/// repaired problems are for programs that ask for all of them.
bool is_for_people(const Problem& problem);

/// What shows that the bytes of a result are right.
enum class Proof : std::uint8_t {
    none,
    size,     ///< the text states their number, and it agrees
    checksum  ///< a checksum of all of them agrees
};

/// Returns true where `proof` settles what the problem puts in doubt, so that it is only repaired.
bool is_settled(const Problem& problem, Proof proof);

}  // namespace quill::codec
