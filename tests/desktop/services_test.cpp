#include "desktop/display.h"
#include "desktop/process.h"
#include "desktop/session_bus.h"
#include "desktop/shown_text.h"
#include "desktop/text_editors.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

namespace quill::tests {
namespace {

using desktop::Command;

TEST(ShownText, BytesBecomeUnicodeAsUtf8OrWindows1252) {
    EXPECT_EQ(desktop::shown("gr\xC3\xBC\xC3\x9F"), QStringLiteral("grüß"));
    EXPECT_EQ(desktop::shown("5 \x80"), QStringLiteral("5 €"));
    EXPECT_EQ(desktop::shown(std::string_view("a\0b", 3)), QStringLiteral("a\uFFFDb"));
    EXPECT_EQ(desktop::shown("a\xE2\x80\xAEgpj"), QStringLiteral("a\uFFFDgpj")) << "text direction is not turned";
    EXPECT_EQ(desktop::shown("a\xF3\xA0\x80\xA1\xF0\x9F\x98\x80"), QStringLiteral("a\uFFFD\U0001F600"))
        << "beyond U+FFFF";
    EXPECT_EQ(desktop::shown("\xE2\x80\x8C"), QStringLiteral("\u200C")) << "a letter of Persian words";
    EXPECT_EQ(desktop::shown("a\tb\nc"), QStringLiteral("a\tb\nc"));
    EXPECT_EQ(desktop::shown_name("a.jpg\t\n.exe"), QStringLiteral("a.jpg\uFFFD\uFFFD.exe"));
    EXPECT_EQ(desktop::shown_message("    Two\r\nlines \r\n"), QStringLiteral("Two\nlines"));
}

TEST(ShownText, LongWordsMayBreakBetweenCharactersAlone) {
    EXPECT_EQ(desktop::breakable(QStringLiteral("four four"), 4), QStringLiteral("four four"));
    EXPECT_EQ(desktop::breakable(QStringLiteral("a fives e\u0301e\u0301e\u0301"), 3),
              QStringLiteral("a fiv\u200Bes e\u0301e\u0301\u200Be\u0301"));  // a letter keeps its accent
    EXPECT_EQ(desktop::breakable(QString(), 4), QString());
}

TEST(ShownText, FileAddressKeepsEveryByteOfThePath) {
    EXPECT_EQ(desktop::file_url("/a b/100%\xE4#?.txt").toEncoded(), QByteArray("file:///a%20b/100%25%E4%23%3F.txt"));
}

TEST(LocalPath, IsTheInverseOfTheAddressOfAFile) {
    for (const std::string path : {"/a b/100%\xE4#?.txt", "/", "/gr\xC3\xBC\xC3\x9F;v=1&x"})
        EXPECT_EQ(desktop::local_path(desktop::file_url(path)), path);
    EXPECT_EQ(desktop::local_path(QUrl(QStringLiteral("https://example.org/a.eml"))), "");
    EXPECT_EQ(desktop::local_path(QUrl(QStringLiteral("mail.eml"))), "");
}

TEST(SessionBus, AddressLeadsToASocket) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"unix:path=/run/user/1000/bus", "/run/user/1000/bus"},
        {"unix:path=/tmp/a%20b,guid=12ab;unix:path=/second", "/tmp/a b"},
        {"unix:abstract=/tmp/dbus-x,guid=1", std::string("\0/tmp/dbus-x", 12)},
        {"tcp:host=localhost,port=1", ""},
        {"disabled:", ""},
        {"", ""},
    };
    for (const auto& [address, path] : cases) EXPECT_EQ(desktop::socket_of_bus_address(address), path) << address;
}

TEST(TextEditors, EntryGivesTheCommandForAFile) {
    struct Case {
        const char* entry;
        std::optional<Command> command;
    };
    const Case cases[] = {
        {"[Desktop Entry]\nName=Pad\nExec=pad --new %F\n", Command{"pad", "--new", "/t/x y"}},
        {"[Desktop Entry]\nExec = \"/opt/my pad/pad\" %u\n", Command{"/opt/my pad/pad", "/t/x y"}},
        {"[Desktop Entry]\nExec=pad %i %c %f\n", Command{"pad", "/t/x y"}},
        {"[Desktop Entry]\nExec=vi %f\nTerminal=true\n", std::nullopt},
        {"[Desktop Entry]\nExec=pad\n", std::nullopt},
        {"[Desktop Action new]\nExec=pad --new %f\n", std::nullopt},
        {"", std::nullopt},
    };
    for (const Case& each : cases)
        EXPECT_EQ(desktop::command_of_entry(each.entry, "/t/x y"), each.command) << each.entry;
}

TEST(TextEditors, VariableCountsUnlessItNamesATerminalProgram) {
    setenv("VISUAL", "vim -y", 1);
    setenv("EDITOR", "/usr/bin/pad --wait", 1);
    EXPECT_EQ(desktop::editor_command("/t/x"), (Command{"/usr/bin/pad", "--wait", "/t/x"}));
    unsetenv("VISUAL");
    unsetenv("EDITOR");
}

TEST(Display, IsThereOnlyWhereAServerAnswers) {
    struct Case {
        const char *platform, *x_display, *wayland_display;
        bool expected;
    };
    const Case cases[] = {{"", "", "", false},
                          {"", ":63000", "", false},
                          {"xcb", ":63000.0", "", false},
                          {"wayland", "", "/nowhere/wayland-9", false},
                          {"", "elsewhere.example:0", "", true},
                          {"offscreen", "", "", true}};
    const char* platform_before = std::getenv("QT_QPA_PLATFORM");
    const std::string platform = platform_before != nullptr ? platform_before : "";
    for (const Case& each : cases) {
        setenv("QT_QPA_PLATFORM", each.platform, 1);
        setenv("DISPLAY", each.x_display, 1);
        setenv("WAYLAND_DISPLAY", each.wayland_display, 1);
        EXPECT_EQ(desktop::has_display(), each.expected) << each.platform << ' ' << each.x_display;
    }
    setenv("QT_QPA_PLATFORM", platform.c_str(), 1);
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
}

TEST(StartDetached, PassesArgumentsByteForByteAndTellsWhatCannotStart) {
    const TemporaryDirectory here;
    const std::string shell = desktop::find_program("sh");
    ASSERT_FALSE(shell.empty());
    // The named pipe makes this wait for the program instead of for a fixed time.
    ASSERT_EQ(std::system("mkfifo pipe"), 0);
    ASSERT_TRUE(desktop::start_detached(shell, {"-c", "printf %s \"$1\" >pipe", "x", "a b\xE4"}, here.path()));
    EXPECT_EQ(here.read("pipe"), "a b\xE4");
    here.write("plain.txt", "no program");
    EXPECT_FALSE(desktop::start_detached(here.path("plain.txt"), {}, ""));
    EXPECT_FALSE(desktop::start_detached(shell, {}, here.path("nowhere")));
    EXPECT_TRUE(desktop::find_program(here.path("plain.txt")).empty());
}

}  // namespace
}  // namespace quill::tests
