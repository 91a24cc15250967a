#pragma once

#include <array>
#include <csignal>
#include <ctime>

namespace quill::cli {

/// While it lives, a signal that asks the process to end (HUP, INT, PIPE, TERM) is remembered, so that work can stop
/// between two steps. Work that has not stopped after 150 ms, or at a second signal, is aborted; its unfinished output
/// is removed. At most one may exist at a time.
class Interruption {
  public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Returns true after such a signal.
    static bool caught();

    /// Ends the process by the signal that was caught; returns if there was none.
    static void end_process_if_caught();

  private:
    static constexpr std::array signals{SIGHUP, SIGINT, SIGPIPE, SIGTERM, SIGALRM};
    std::array<struct sigaction, signals.size()> previous_ = {};
    bool has_timer_ = false;
};

}  // namespace quill::cli
