#pragma once

#include "platform/platform.h"

#include <functional>
#include <string>
#include <vector>

namespace quill::desktop {

/// Programs on the search path, run as child processes.
class WaitedPrograms final : public platform::Programs {
  public:
    std::string find(const std::string& program) override;
    platform::ProgramResult run(const std::string& path, const std::vector<std::string>& arguments,
                                const std::function<bool()>& goes_on) override;
};

}  // namespace quill::desktop
