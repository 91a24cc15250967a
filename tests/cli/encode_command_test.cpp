#include "cli/command_fixture.h"

#include <gmock/gmock.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace quill::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Encode : public CommandTest {};

TEST_F(Encode, AnOutputIsBesideItsInputUnderItsNameAndTheFormats) {
    directory.write("d.x/film.avi", "Cat");
    EXPECT_EQ(call({"encode", "--format", "uue", "./d.x/film.avi"}), ExitStatus::good);
    EXPECT_EQ(out, "./d.x/film.avi.uue\t35\n");
    EXPECT_EQ(directory.read("d.x/film.avi.uue"), "begin 644 film.avi\r\n#0V%T\r\n`\r\nend\r\n");
    const struct {
        const char* format;
        const char* extension;
    } table[] = {{"xxe", "xxe"}, {"mime", "mme"}, {"binhex", "hqx"}, {"yenc", "ync"}};
    for (const auto& row : table) {
        EXPECT_EQ(call({"encode", "--format", row.format, "--quiet", "d.x/film.avi"}), ExitStatus::good);
        EXPECT_EQ(out, "");
        EXPECT_TRUE(directory.has(std::string("d.x/film.avi.") + row.extension));
    }
    directory.write("readme", "Cat");
    EXPECT_EQ(call({"encode", "--format", "yenc", "readme"}), ExitStatus::good);
    EXPECT_EQ(directory.names(), (std::vector<std::string>{"d.x", "readme", "readme.ync"}));
}

TEST_F(Encode, AnExistingOutputIsReplacedWithForceOnly) {
    directory.write("a.bin", "123456789");
    directory.write("a.bin.uue", "mine");
    directory.write("a.bin.2.ync", "mine");
    ASSERT_EQ(symlink("a.bin.uue", "link.uue"), 0);
    ASSERT_EQ(symlink("nowhere", "dangling.uue"), 0);
    const std::vector<std::string> before = directory.names();
    const std::vector<std::vector<std::string>> calls = {
        {"encode", "--format", "uue", "a.bin"},
        {"encode", "--format", "uue", "--output", "link.uue", "a.bin"},
        {"encode", "--format", "uue", "--output", "dangling.uue", "a.bin"},
        {"encode", "--format", "yenc", "--part-size", "3", "a.bin"},  // part 2 of 3
    };
    for (const auto& arguments : calls) {
        EXPECT_EQ(call(arguments), ExitStatus::failed) << testing::PrintToString(arguments);
        EXPECT_THAT(err, testing::ContainsRegex("(a.bin.uue|link.uue|dangling.uue|a.bin.2.ync): exists already"));
        EXPECT_EQ(directory.names(), before);
    }
    EXPECT_EQ(directory.read("a.bin.uue") + directory.read("a.bin.2.ync"), "minemine");
    EXPECT_EQ(call({"encode", "--force", "--format", "uue", "--output", "link.uue", "a.bin"}), ExitStatus::good) << err;
    EXPECT_THAT(directory.read("a.bin.uue"), testing::StartsWith("begin 644 a.bin"));
    EXPECT_EQ(call({"encode", "--force", "--format", "uue", "--output", "dangling.uue", "a.bin"}), ExitStatus::failed);
    EXPECT_EQ(directory.names(), before);
}

TEST_F(Encode, TheInputsMayStandInAList) {
    directory.write("a b.txt", "Cat");
    directory.write("c\nd", "Dog");
    EXPECT_EQ(call({"encode", "--format", "uue", "--files-from", "-"}, std::string("a b.txt\0c\nd\0", 12)),
              ExitStatus::good);
    EXPECT_TRUE(directory.has("a b.txt.uue") && directory.has("c\nd.uue"));
}

TEST_F(Encode, JsonSaysWhatWasWritten) {
    directory.write("n.bin", "123456789");
    EXPECT_EQ(call({"encode", "--json", "--format", "yenc", "--part-size", "5", "n.bin"}), ExitStatus::good);
    EXPECT_EQ(
        out, R"([{"name": "n.bin.1.ync", "path": "n.bin.1.ync", "size": 121, "format": "yenc", "part": 1, "parts": 2, )"
             R"("sources": ["n.bin"]},)"
             "\n"
             R"( {"name": "n.bin.2.ync", "path": "n.bin.2.ync", "size": 120, "format": "yenc", "part": 2, "parts": 2, )"
             R"("sources": ["n.bin"]}])"
             "\n");
    EXPECT_EQ(call({"encode", "--json-lines", "--format", "uue", "n.bin"}), ExitStatus::good);
    EXPECT_THAT(out, testing::MatchesRegex("\\{.*\\}\n"));
}

TEST_F(Encode, OptionsReachTheFormat) {
    directory.write("n.bin", "123456789");
    EXPECT_EQ(call({"encode", "--format", "yenc", "--crc", "--line", "64", "--part-size", "5", "n.bin"}),
              ExitStatus::good);
    EXPECT_EQ(out, "n.bin.1.ync\t120\nn.bin.2.ync\t134\n");
    EXPECT_THAT(directory.read("n.bin.2.ync"), HasSubstr("line=64"));
    EXPECT_THAT(directory.read("n.bin.2.ync"), HasSubstr(" crc32=cbf43926"));
    EXPECT_EQ(call({"decode", "--into", "back", "n.bin.2.ync", "n.bin.1.ync"}), ExitStatus::good);
    EXPECT_EQ(directory.read("back/n.bin"), "123456789");
}

TEST_F(Encode, SeveralInputsGoIntoADirectory) {
    directory.write("a.txt", "Cat");
    directory.write("b.txt", "Dog");
    directory.make_directory("out");
    EXPECT_EQ(call({"encode", "--format", "mime", "--output", "out", "a.txt", "b.txt"}), ExitStatus::good);
    EXPECT_TRUE(directory.has("out/a.txt.mme") && directory.has("out/b.txt.mme"));
    EXPECT_EQ(call({"encode", "--format", "mime", "--output", "one", "a.txt", "b.txt"}), ExitStatus::failed);
    EXPECT_FALSE(directory.has("one"));
}

TEST_F(Encode, NoInputIsReplacedNotEvenAnothers) {
    directory.write("a", "picture");
    directory.write("a.ync", "text");
    directory.write("b/a", "other");
    ASSERT_EQ(link("a.ync", "hard"), 0);
    EXPECT_EQ(call({"encode", "--force", "--format", "yenc", "a", "a.ync"}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("would replace an input"));
    EXPECT_EQ(call({"encode", "--force", "--format", "uue", "--output", "hard", "a.ync"}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("would replace an input"));
    EXPECT_EQ(call({"encode", "--force", "--format", "uue", "--output", "b", "a", "b/a"}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("b/a.uue"));
    EXPECT_THAT(directory.names(), ElementsAre("a", "a.ync", "b", "hard"));
    EXPECT_FALSE(directory.has("b/a.uue"));
    EXPECT_EQ(directory.read("a.ync"), "text");
}

TEST_F(Encode, WhatCannotBeDoneIsSaid) {
    directory.write("a.txt", "Cat");
    const std::vector<std::vector<std::string>> calls = {
        {"encode", "a.txt"},
        {"encode", "--format", "zip", "a.txt"},
        {"encode", "--format", "uue"},
        {"encode", "--format", "uue", "absent.txt"},
        {"encode", "--format", "uue", "--line", "70", "a.txt"},
        {"encode", "--format", "yenc", "--line", "0", "a.txt"},
        {"encode", "--format", "yenc", "--part-size", "-1", "a.txt"},
        {"encode", "--format", "mime", "--crc", "a.txt"},
        {"encode", "--format", "mime", "--output", "absent/a", "a.txt"},
    };
    for (const auto& arguments : calls) {
        EXPECT_EQ(call(arguments), ExitStatus::failed) << arguments.back();
        EXPECT_NE(err, "") << arguments.back();
        EXPECT_EQ(out, "");
    }
    EXPECT_THAT(directory.names(), ElementsAre("a.txt"));
}

TEST_F(Encode, WhatCanBeEncodedIsThoughAnotherInputFails) {
    directory.write("a.txt", "Cat");
    EXPECT_EQ(call({"encode", "--format", "uue", "absent.txt", "a.txt"}), ExitStatus::failed);
    EXPECT_EQ(out, "a.txt.uue\t32\n");
}

}  // namespace
}  // namespace quill::cli
