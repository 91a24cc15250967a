#include "cli/interruption.h"

#include <array>
#include <csignal>

namespace quill::cli {
namespace {

constexpr std::array signals{SIGHUP, SIGINT, SIGTERM};
volatile std::sig_atomic_t caught_signal = 0;
std::array<struct sigaction, signals.size()> previous;

void remember(int number) {
    caught_signal = number;
}

}  // namespace

Interruption::Interruption() {
    struct sigaction action = {};
    action.sa_handler = remember;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < signals.size(); ++i) {
        sigaction(signals[i], nullptr, &previous[i]);
        // What the caller has switched off (nohup) stays off.
        if (previous[i].sa_handler != SIG_IGN) sigaction(signals[i], &action, nullptr);
    }
}

Interruption::~Interruption() {
    for (std::size_t i = 0; i < signals.size(); ++i) sigaction(signals[i], &previous[i], nullptr);
}

bool Interruption::caught() {
    return caught_signal != 0;
}

void Interruption::end_process_if_caught() {
    if (caught_signal == 0) return;
    std::signal(caught_signal, SIG_DFL);
    std::raise(caught_signal);
}

}  // namespace quill::cli
