#pragma once

#include "files/atomic_file.h"
#include "platform/platform.h"

#include <optional>
#include <string>

namespace quill::encoder {

/// Where an output goes, and what may happen to a file that gets in its way.
struct OutputChoice {
    std::string path;
    files::OnCollision on_collision = files::OnCollision::fail;
};

/// Asks what to do where a file is at `wanted` already. Returns nullopt where the user wants no output.
std::optional<OutputChoice> choose_output(platform::Platform& platform, const std::string& wanted);

}  // namespace quill::encoder
