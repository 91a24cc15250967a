#include "cli/interruption.h"

#include "files/unfinished.h"

#include <atomic>

namespace quill::cli {
namespace {

constexpr long patience = 150'000'000;  // nanoseconds

std::atomic<int> caught_signal = 0;
timer_t timer;  // of the only Interruption

void end_process() {
    files::remove_unfinished();
    const int number = caught_signal;
    std::signal(number, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    sigprocmask(SIG_UNBLOCK, &set, nullptr);  // it is blocked in its own handler
    std::raise(number);
}

/// Starts the timer at the first signal; ends the process at the timer's own signal or a second one. All calls in here
/// are async-signal-safe.
void on_signal(int number) {
    int none = 0;
    if (number != SIGALRM && caught_signal.compare_exchange_strong(none, number)) {
        const itimerspec once{{0, 0}, {0, patience}};
        timer_settime(timer, 0, &once, nullptr);
    } else if (caught_signal != 0) {
        end_process();
    }
}

}  // namespace

Interruption::Interruption() {
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    has_timer_ = timer_create(CLOCK_MONOTONIC, &event, &timer) == 0;
    struct sigaction action = {};
    action.sa_handler = on_signal;
    action.sa_flags = static_cast<int>(SA_RESTART);
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < signals.size(); ++i) {
        sigaction(signals[i], nullptr, &previous_[i]);
        // A signal that the caller ignores (nohup) stays ignored.
        if (previous_[i].sa_handler != SIG_IGN) sigaction(signals[i], &action, nullptr);
    }
}

Interruption::~Interruption() {
    if (has_timer_) timer_delete(timer);
    for (std::size_t i = 0; i < signals.size(); ++i) sigaction(signals[i], &previous_[i], nullptr);
}

bool Interruption::caught() {
    return caught_signal != 0;
}

void Interruption::end_process_if_caught() {
    if (caught_signal == 0) return;
    end_process();
}

}  // namespace quill::cli
