#include "cli/progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace quill::cli {
namespace {

using std::chrono::milliseconds;

/// A progress bar on a string, and a clock that moves only on request.
struct Terminal {
    explicit Terminal(bool is_terminal) : console{in, out, err, is_terminal} {}

    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    Console console;
    ProgressBar::Time now{};
    ProgressBar bar{console, true, [this] { return now; }};

    /// Returns what was drawn since the last call.
    std::string drawn() {
        std::string text = err.str();
        err.str("");
        return text;
    }
};

TEST(ProgressBar, ShortWorkShowsNothing) {
    Terminal terminal(true);
    terminal.now += milliseconds(499);
    terminal.bar.show("a.png", 1, 2);
    terminal.bar.clear();
    EXPECT_EQ(terminal.drawn(), "");
}

TEST(ProgressBar, LongWorkIsDrawnAtMostTenTimesASecondAndTakenAwayAgain) {
    Terminal terminal(true);
    terminal.now += milliseconds(500);
    terminal.bar.show("a\x1b.png", 1, 2);
    EXPECT_EQ(terminal.drawn(), "\r\x1b[K[###############               ] 50 % a?.png");
    terminal.now += milliseconds(99);
    terminal.bar.show("a.png", 2, 2);
    EXPECT_EQ(terminal.drawn(), "");
    terminal.now += milliseconds(1);
    terminal.bar.show("a.png", 3, 2);
    EXPECT_EQ(terminal.drawn(), "\r\x1b[K[##############################] 100 % a.png");
    terminal.bar.clear();
    EXPECT_EQ(terminal.drawn(), "\r\x1b[K");
    terminal.bar.clear();
    EXPECT_EQ(terminal.drawn(), "");
}

TEST(ProgressBar, NothingIsDrawnWhereStandardErrorIsNoTerminal) {
    Terminal terminal(false);
    terminal.now += milliseconds(5000);
    terminal.bar.show("a.png", 1, 2);
    EXPECT_EQ(terminal.drawn(), "");
}

TEST(ProgressBar, AnEmptyInputDrawsNothing) {
    Terminal terminal(true);
    terminal.now += milliseconds(5000);
    terminal.bar.show("a.png", 0, 0);
    EXPECT_EQ(terminal.drawn(), "");
}

}  // namespace
}  // namespace quill::cli
