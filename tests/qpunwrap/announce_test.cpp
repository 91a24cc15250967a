#include "qpunwrap/announce.h"

#include "support/temporary_directory.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <gmock/gmock.h>
#include <pty.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quill::qpunwrap {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// A separate process, at a terminal, that announces something.
class Announce : public testing::Test {
  protected:
    Announce() {
        directory_.write("zenity", "#!/bin/sh\nfor last; do :; done\nprintf %s \"$last\" >'" + shown() + "'\n");
        chmod(directory_.path("zenity").c_str(), S_IRWXU);
    }

    std::string shown() const { return directory_.path("shown"); }

    /// Returns the text in the box; empty if there was none. With `leaves`, the process has left the terminal's
    /// session.
    std::string announced(const std::string& text, bool leaves, const char* display = ":0") {
        int terminal = -1;
        const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            if (leaves && fork() == 0) {
                setsid();
                announce_and_wait(text, display);
            }
            if (!leaves) announce_and_wait(text, display);
            wait(nullptr);
            _exit(0);
        }
        waitpid(child, nullptr, 0);
        close(terminal);
        return directory_.has("shown") ? directory_.read("shown") : std::string();
    }

    tests::TemporaryDirectory directory_;

  private:
    [[noreturn]] void announce_and_wait(const std::string& text, const char* display) {
        setenv("PATH", directory_.path().c_str(), 1);
        setenv("DISPLAY", display, 1);
        unsetenv("WAYLAND_DISPLAY");
        announce(text);
        while (wait(nullptr) > 0) {
        }
        _exit(0);
    }
};

TEST_F(Announce, PrintsOnlyToWhoeverCalledItAtATerminal) {
    EXPECT_THAT(announced("made\n", false), IsEmpty());
}

TEST_F(Announce, ShowsABoxToWhoeverStartedItFromTheDesktopEvenIfATerminalIsInherited) {
    EXPECT_EQ(announced("made\n", true), "made\n");
}

TEST_F(Announce, ShowsNoBoxWithoutADisplay) {
    EXPECT_THAT(announced("made\n", true, ""), IsEmpty());
}

TEST_F(Announce, ShowsBeginningAndEndOfWhatIsTooLongForAnArgument) {
    std::string text = "first\n";
    for (int i = 0; i < 5000; ++i) text += std::string(200, 'x') + "\n";
    EXPECT_THAT(announced(text + "Could not write x\n", true),
                AllOf(StartsWith("first\nxxx"), HasSubstr("\n... (4,972 lines left out)\n"),
                      EndsWith("\nCould not write x\n")));
}

TEST(BoxText, IsUtf8WithEachLineReadByItself) {
    EXPECT_EQ(box_text("caf\xE9\n\xC3\xA9t\xC3\xA9\n"), "caf\xC3\xA9\n\xC3\xA9t\xC3\xA9\n");
    const std::string cut = box_text("x" + std::string(600, '\xE9') + "\n");
    EXPECT_TRUE(text::is_utf8(cut));
    EXPECT_THAT(cut, AllOf(EndsWith("\xC3\xA9...\n"), Not(HasSubstr("\xC3."))));
}

}  // namespace
}  // namespace quill::qpunwrap
