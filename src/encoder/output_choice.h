#pragma once

#include "files/atomic_file.h"
#include "platform/platform.h"

#include <optional>
#include <string>

namespace quill::encoder {

/// The path of an output, and what may happen to a file in its way.
struct OutputChoice {
    std::string path;
    files::OnCollision on_collision = files::OnCollision::fail;
};

/// Asks what to do if a file already exists at `wanted`. Returns nullopt if the user wants no output.
std::optional<OutputChoice> choose_output(platform::Platform& platform, const std::string& wanted);

}  // namespace quill::encoder
