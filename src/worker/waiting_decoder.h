#pragma once

#include "worker/worker_process.h"

#include <optional>
#include <string>

namespace quill::worker {

/// Decodes pictures one after the other and waits for each, for at most 20 seconds. The worker starts with the first
/// picture, and again after one that has ended it.
class WaitingDecoder {
  public:
    explicit WaitingDecoder(std::string program = find_worker()) : program_(std::move(program)) {}

    /// Returns the picture, or one that has failed with the reason. `keeps_colors`: as the file has them, whatever its
    /// color profile.
    platform::Picture decode(const platform::PictureSource& source, platform::PictureSize bounds = {},
                             bool keeps_colors = false);

    /// The worker, while it runs.
    const std::optional<WorkerProcess>& process() const { return process_; }

  private:
    platform::Picture wait();
    platform::Picture give_up(const char* reason);

    std::string program_;
    std::optional<WorkerProcess> process_;
};

}  // namespace quill::worker
