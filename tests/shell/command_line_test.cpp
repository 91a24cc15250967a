#include "shell/command_line.h"

#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quill::shell {
namespace {

using tests::TemporaryDirectory;

struct LineCase {
    const char* line;
    Start start;
};

void PrintTo(const LineCase& c, std::ostream* out) {
    *out << c.line;
}

class CommandLine : public testing::TestWithParam<LineCase> {};

TEST_P(CommandLine, IsTakenApart) {
    EXPECT_EQ(parse_command_line(GetParam().line, names_a_file), GetParam().start);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, CommandLine,
    testing::Values(LineCase{"?", {.no_file = true, .hides_options = true}},
                    LineCase{"/a/b.mim", {.path = "/a/b.mim"}},              //
                    LineCase{"\"/a b/c d.mim\"", {.path = "/a b/c d.mim"}},  //
                    LineCase{"/a/b.mim\"", {.path = "/a/b.mim"}},            // each end by itself
                    LineCase{"\"", {.hides_options = true}},                 //
                    LineCase{"\"\"", {.hides_options = true}},               //
                    LineCase{"/un /a/x.zip", {.open_at_once = true, .path = "/a/x.zip"}},
                    LineCase{"/un \"/a/my x.zip\"", {.open_at_once = true, .path = "\"/a/my x.zip"}},
                    LineCase{"\"/un /a/my x.zip\"", {.open_at_once = true, .path = "/a/my x.zip"}},
                    LineCase{"/unp /a/my x.zip", {.open_at_once = true, .unpacks_apart = true, .path = "/a/my x.zip"}},
                    LineCase{"/unpacked/x.zip", {.open_at_once = true, .path = "acked/x.zip"}},
                    LineCase{"/un", {.hides_options = true, .open_at_once = true}},
                    LineCase{"/UN x", {.path = "/UN x"}},  // switches know their case
                    LineCase{"/vi /a/x.htx", {.view_only = true, .path = "/a/x.htx"}},
                    LineCase{"/ue", {.create = true, .path = "/ue"}},
                    LineCase{"/ue and more", {.create = true, .path = "/ue and more"}},
                    LineCase{"/de", {.choose = true, .path = "/de"}}, LineCase{"/desk/x.mim", {.path = "/desk/x.mim"}},
                    LineCase{"/um", {.create = true, .create_htx = true, .path = "/um"}}));

/// Returns the start that a program with `arguments` reads.
Start start_with(const std::vector<std::string>& arguments) {
    return parse_command_line(command_line_of(arguments), names_a_file);
}

TEST(Arguments, AreOneLineWithBlanksQuotedAndPathsAbsolute) {
    const TemporaryDirectory dir;
    const std::string here = dir.path() + "/";
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, ""},
        {{""}, ""},
        {{"?"}, "?"},
        {{"x.mim"}, here + "x.mim"},
        {{"./x.mim"}, here + "x.mim"},
        {{"my mail.mim"}, "\"" + here + "my mail.mim\""},
        {{"/un", "x.zip"}, "/un " + here + "x.zip"},
        {{"/unp", "x y.zip"}, "/unp " + here + "x y.zip"},
        {{"/vi", "my x.zip"}, "/vi " + here + "my x.zip"},
        {{"/ue"}, "/ue"},
        {{"/de"}, "/de"},
        {{"a b", "c d"}, "\"" + here + "a b\" \"" + here + "c d\""},
        {{"&", "my x.ync"}, "& " + here + "my x.ync"},
        {{"&x.ync"}, "&" + here + "x.ync"},
    };
    for (const auto& [arguments, line] : cases) EXPECT_EQ(command_line_of(arguments), line);
}

TEST(Arguments, WithBlanksReachTheirFileBehindASwitchToo) {
    const TemporaryDirectory dir;
    const std::string path = dir.write("my mail.zip", "x");
    EXPECT_EQ(start_with({"my mail.zip"}).path, path);
    EXPECT_EQ(start_with({"/un", "my mail.zip"}).path, path);
    EXPECT_EQ(start_with({"/vi", path}).path, path);
}

TEST(Arguments, AFileThatIsThereIsAPathWhateverItBeginsWith) {
    const TemporaryDirectory dir;
    dir.write("&x.ync", "x");
    EXPECT_EQ(start_with({"&x.ync"}), (Start{.path = dir.path("&x.ync")}));

    const auto is_there = [](const std::string& path) { return path == "/unsorted/x.zip" || path == "/um"; };
    EXPECT_EQ(parse_command_line("/unsorted/x.zip", is_there), (Start{.path = "/unsorted/x.zip"}));
    EXPECT_EQ(parse_command_line("/un /unsorted/x.zip", is_there),
              (Start{.open_at_once = true, .path = "/unsorted/x.zip"}));
    EXPECT_EQ(parse_command_line("/um", is_there), (Start{.path = "/um"}));
    EXPECT_TRUE(parse_command_line("/um x", is_there).create_htx);
}

TEST(Arguments, TheChoiceOfTheSecondDecoderIsNoPartOfThePath) {
    const TemporaryDirectory dir;
    const std::string path = dir.write("a post.ync", "x");
    EXPECT_EQ(start_with({"&", "a post.ync"}), (Start{.path = path}));
    EXPECT_EQ(start_with({"&a post.ync"}), (Start{.path = path}));
    EXPECT_TRUE(command_line_of(std::vector<std::string>{"&", "a post.ync"}).starts_with('&'));
}

}  // namespace
}  // namespace quill::shell
