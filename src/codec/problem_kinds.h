#pragma once

#include "codec/attachment.h"

namespace quill::codec {

/// Returns true where people must hear of the problem: where bytes of the result are wrong, doubtful or missing, and
/// where the input was understood but something of it was left out or the sender's own check was of no use. Other
/// repaired problems are for programs that ask for all of them.
bool is_for_people(const Problem& problem);

}  // namespace quill::codec
