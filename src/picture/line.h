#pragma once

#include "picture/decoder.h"
#include "worker/message.h"

namespace quill::picture {

/// Reads requests from `line` one after another, decodes their pictures and sends the answers, until the line is
/// closed.
void serve(int line);

}  // namespace quill::picture
