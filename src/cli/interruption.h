#pragma once

namespace quill::cli {

/// While it lives, the first signal that asks the process to end (HUP, INT, TERM) is only remembered, so that work can
/// stop between two steps and leave no unfinished file behind. The second one acts as ever.
class Interruption {
  public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Whether such a signal has come.
    static bool caught();

    /// Ends the process by the signal that was caught; returns where there was none.
    static void end_process_if_caught();
};

}  // namespace quill::cli
