#include "cli/command_fixture.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Encode : public CommandTest {};

TEST_F(Encode, AnOutputStandsBesideItsInput) {
    directory.make_directory("mail");
    directory.write("mail/cat.txt", "Cat");
    EXPECT_EQ(call({"encode", "--format", "uue", "./mail/cat.txt"}), ExitStatus::good);
    EXPECT_EQ(out, "mail/cat.UUE\t34\n");
    EXPECT_EQ(directory.read("mail/cat.UUE"), "begin 644 cat.txt\r\n#0V%T\r\n`\r\nend\r\n");
    EXPECT_EQ(call({"encode", "--format", "yenc", "--quiet", "mail/cat.txt"}), ExitStatus::good);
    EXPECT_EQ(out, "");
    EXPECT_TRUE(directory.has("mail/cat.ync"));
}

TEST_F(Encode, StepsUpwardsAreNoNamesWithDots) {
    directory.write("a.txt", "Cat");
    directory.make_directory("here");
    EXPECT_EQ(call({"encode", "--format", "xxe",
                    "here/../../" + directory.path().substr(directory.path().rfind('/') + 1) + "/a.txt"}),
              ExitStatus::good);
    EXPECT_TRUE(directory.has("a.XXE"));
}

TEST_F(Encode, OptionsReachTheFormat) {
    directory.write("n.bin", "123456789");
    EXPECT_EQ(call({"encode", "--format", "yenc", "--crc", "--line", "64", "--part-size", "5", "n.bin"}),
              ExitStatus::good);
    EXPECT_EQ(out, "n.1.ync\t120\nn.2.ync\t134\n");
    EXPECT_THAT(directory.read("n.2.ync"), HasSubstr("line=64"));
    EXPECT_THAT(directory.read("n.2.ync"), HasSubstr(" crc32=cbf43926"));
    EXPECT_EQ(call({"decode", "--into", directory.make_directory("back"), "n.2.ync", "n.1.ync"}), ExitStatus::good);
    EXPECT_EQ(directory.read("back/n.bin"), "123456789");
}

TEST_F(Encode, SeveralInputsGoIntoADirectory) {
    directory.write("a.txt", "Cat");
    directory.write("b.txt", "Dog");
    directory.make_directory("out");
    EXPECT_EQ(call({"encode", "--format", "mime", "--output", "out", "a.txt", "b.txt"}), ExitStatus::good);
    EXPECT_TRUE(directory.has("out/a.MME") && directory.has("out/b.MME"));
    EXPECT_EQ(call({"encode", "--format", "mime", "--output", "one", "a.txt", "b.txt"}), ExitStatus::failed);
    EXPECT_FALSE(directory.has("one"));
}

TEST_F(Encode, NoInputIsReplacedNotEvenAnothers) {
    directory.write("a.jpg", "picture");
    directory.write("a.ync", "text");
    EXPECT_EQ(call({"encode", "--format", "yenc", "a.jpg", "a.ync"}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("would replace an input"));
    directory.write("old.a.jpg", "1");
    directory.write("old.b.jpg", "2");
    EXPECT_EQ(call({"encode", "--format", "uue", "old.a.jpg", "old.b.jpg"}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("old.UUE"));
    EXPECT_THAT(directory.names(), ElementsAre("a.jpg", "a.ync", "old.a.jpg", "old.b.jpg"));
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
    EXPECT_EQ(out, "a.UUE\t32\n");
}

}  // namespace
}  // namespace quill::cli
