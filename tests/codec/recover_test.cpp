#include "codec/encoded.h"
#include "codec/recovery/library.h"
#include "files/directory.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace quill::codec {
namespace {

using tests::base64;

std::string data_path(const std::string& name) {
    return std::string(QUILL_TEST_DATA "/") + name;
}

std::string data(const std::string& name) {
    return files::read_file(data_path(name)).value();
}

/// The output of another program, and the original.
struct Foreign {
    std::vector<std::string> inputs;
    std::string name;
    std::string original;
};

class ForeignEncoder : public testing::TestWithParam<Foreign> {};

TEST_P(ForeignEncoder, IsReadBackByteForByte) {
    tests::TemporaryDirectory dir;
    std::vector<std::string> paths;
    for (const std::string& input : GetParam().inputs) paths.push_back(data_path(input));
    const Result<Recovery> recovery = Recovery::open(paths);
    ASSERT_TRUE(recovery);
    const auto& found = recovery->attachments();
    const auto file =
        std::find_if(found.begin(), found.end(), [&](const Attachment& a) { return a.name == GetParam().name; });
    ASSERT_NE(file, found.end());
    const Result<Recovered> written = recovery->write(*file, dir.path("out"), files::OnCollision::fail);
    ASSERT_TRUE(written);
    EXPECT_LE(written->outcome.verdict, Verdict::whole);
    EXPECT_EQ(written->sources.size(), GetParam().inputs.size());
    EXPECT_EQ(dir.read("out"), data(GetParam().original));
}

INSTANTIATE_TEST_SUITE_P(
    Files, ForeignEncoder,
    testing::Values(Foreign{{"uue/sharutils.uue"}, "picture.bin", "picture.bin"},
                    Foreign{{"uue/sharutils-base64.uue"}, "picture.bin", "picture.bin"},
                    Foreign{{"uue/sharutils-encoded-name.uue"}, "grüße aus köln.txt", "poem.txt"},
                    Foreign{{"xxe/uuenview.xxe"}, "picture.bin", "picture.bin"},
                    Foreign{{"mime/mpack.eml"}, "picture.bin", "picture.bin"},
                    Foreign{{"mime/python-email.eml"}, "poem.txt", "poem.txt"},
                    Foreign{{"parts/sound.003", "parts/sound.001", "parts/sound.002"}, "sound.bin", "sound.bin"},
                    Foreign{{"parts/mp.02", "parts/mp.01"}, "picture.bin", "picture.bin"}));

TEST(Recovery, SaysWhichPartIsMissing) {
    const Result<Recovery> recovery =
        Recovery::open(std::array{data_path("parts/sound.001"), data_path("parts/sound.003")});
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 1U);
    const Outcome outcome = recovery->check(recovery->attachments().front());
    EXPECT_EQ(outcome.verdict, Verdict::incomplete);
    ASSERT_FALSE(outcome.problems.empty());
    EXPECT_EQ(outcome.problems.front().text, "Part 2 of 3 is missing");
}

TEST(Recovery, CallsNoSplitMessageWholeThatLacksItsFirstPart) {
    const Result<Recovery> recovery = Recovery::open(std::array{data_path("parts/mp.02")});
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 1U);
    const Outcome outcome = recovery->check(recovery->attachments().front());
    EXPECT_EQ(outcome.verdict, Verdict::incomplete);
    ASSERT_FALSE(outcome.problems.empty());
    EXPECT_EQ(outcome.problems.front().text, "Part 1 of 2 is missing");
}

TEST(Recovery, WritesNoFileWhereNothingCouldBeDecoded) {
    tests::TemporaryDirectory dir;
    const std::string in =
        dir.write("in", "Content-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\n(((())))\n");
    const Result<Recovery> recovery = Recovery::open(std::array{in});
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 1U);
    const Result<Recovered> written =
        recovery->write(recovery->attachments().front(), dir.path("a"), files::OnCollision::fail);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, ErrorCode::bad_input);
    EXPECT_EQ(dir.names(), std::vector<std::string>{"in"});
}

TEST(Recovery, AnInputThatDoesNotStayAsItWasVouchesForNothing) {
    tests::TemporaryDirectory dir;
    const std::string text = "begin 644 cat\n#0V%T\n`\nend\nsize 3\n";
    const std::string in = dir.write("in", text);
    const auto opened = [&] { return Recovery::open(std::array{in}).value(); };
    const auto kinds = [](const Outcome& outcome) {
        std::vector<std::string> out;
        for (const Problem& problem : outcome.problems) out.emplace_back(word_of(problem));
        return out;
    };
    const Recovery changed = opened();
    EXPECT_EQ(changed.check(changed.attachments().at(0)).verdict, Verdict::verified);
    std::filesystem::last_write_time(in, std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
    Outcome outcome = changed.check(changed.attachments().at(0));
    EXPECT_EQ(outcome.verdict, Verdict::damaged);
    EXPECT_THAT(kinds(outcome), testing::ElementsAre("input-changed"));
    const Recovery cut = opened();
    std::filesystem::resize_file(in, 16);
    outcome = cut.check(cut.attachments().at(0));
    EXPECT_EQ(outcome.verdict, Verdict::incomplete);
    EXPECT_THAT(kinds(outcome), testing::Contains("input-changed"));
    EXPECT_FALSE(cut.write(cut.attachments().at(0), dir.path("out"), files::OnCollision::fail));
}

TEST(Recovery, TheFilesOfEncodedMessagesCountForTheLimit) {
    tests::TemporaryDirectory dir;
    std::string inner = "Subject: x\n\n";
    for (int i = 0; i < 20'000; ++i) inner += "begin 644 a\n#0V%T\n`\nend\n";
    std::string text = "MIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=b\n\n";
    for (int i = 0; i < 3; ++i) {
        text += "--b\nContent-Type: message/rfc822\nContent-Transfer-Encoding: base64\n\n" + base64(inner) + "\n";
    }
    const Result<Recovery> recovery =
        Recovery::open(std::array{dir.write("in", text + "--b--\n")}, {}, Texts::left_out);
    ASSERT_TRUE(recovery);
    EXPECT_LE(recovery->attachments().size(), most_files);
    EXPECT_EQ(recovery->problems().size(), 1U);
}

/// Returns a message with a picture, wrapped `rounds` times in a message that has it in Base64.
std::string encoded_message(unsigned rounds) {
    std::string text = "Subject: " + std::string(90, 'x') + "\n\nbegin 644 cat\n#0V%T\n`\nend\n";
    for (unsigned i = 0; i < rounds; ++i) {
        text = "Content-Type: multipart/mixed; boundary=b" + std::to_string(i) + "\n\n--b" + std::to_string(i) +
               "\nContent-Type: message/rfc822\nContent-Transfer-Encoding: base64\n\n" + base64(text) + "\n--b" +
               std::to_string(i) + "--\n";
    }
    return text;
}

TEST(Recovery, FindsWhatLiesInMessagesThatAreEncoded) {
    tests::TemporaryDirectory dir;
    const std::string plain = "begin 644 dog\n#0V%T\n`\nend\n";
    for (const Texts texts : {Texts::kept, Texts::left_out}) {
        const std::vector<std::string> paths = {dir.write("m.5", encoded_message(2)), dir.write("n.6", plain)};
        const Result<Recovery> recovery = Recovery::open(paths, {}, texts);
        ASSERT_TRUE(recovery);
        std::vector<Attachment> files = recovery->attachments();
        std::erase_if(files, [](const Attachment& file) { return file.message_text; });
        ASSERT_EQ(files.size(), 2U);
        EXPECT_EQ(files[0].name, "cat");
        EXPECT_EQ(files[1].name, "dog");
        const Result<Recovered> written = recovery->write(files[0], dir.path("cat"), files::OnCollision::replace);
        ASSERT_TRUE(written);
        EXPECT_EQ(dir.read("cat"), "Cat");
        EXPECT_EQ(written->sources, std::vector{paths[0]});
        EXPECT_EQ(recovery->attachments().size() == files.size(), texts == Texts::left_out);
    }
}

TEST(Recovery, TheBoundariesInAnEncodedMessageAreNotThoseAroundIt) {
    tests::TemporaryDirectory dir;
    const std::string outer = "Content-Type: multipart/mixed; boundary=O\n\n--O\nContent-Type: message/rfc822\n";
    const std::string inner =
        "Content-Transfer-Encoding: quoted-printable\n\nContent-Type: multipart/mixed; boundary=3DI\n\n--I\n"
        "Content-Type: image/gif; name=3Da.gif\nContent-Transfer-Encoding: base64\n\nR0lGODlh\n--I--\n";
    const std::string last = "--O\nContent-Type: text/plain; name=b.txt\n\nb\n--O--\n";
    const Result<Recovery> recovery =
        Recovery::open(std::array{dir.write("m", outer + inner + last)}, {}, Texts::left_out);
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 2U);
    EXPECT_EQ(recovery->attachments()[0].name, "a.gif");
    EXPECT_EQ(recovery->check(recovery->attachments()[0]).size, 6U);
    EXPECT_EQ(recovery->attachments()[1].name, "b.txt");
}

TEST(Recovery, AMessageThatIsOnlySaidToBeEncodedIsReadAsItStands) {
    tests::TemporaryDirectory dir;
    const std::string before =
        "Content-Type: multipart/mixed; boundary=O\n\n--O\nContent-Type: message/rfc822\n"
        "Content-Transfer-Encoding: quoted-printable\n\nSubject: s\n";
    const std::string after = "Content-Transfer-Encoding: base64\n\nR0lGODlhAQ==\n";
    const std::string last = "--O\nContent-Type: text/plain; name=\"b.txt\"\n\nb\n--O--\n";
    const auto multipart = [&](const std::string& boundary, const std::string& parameter) {
        return "Content-Type: multipart/mixed; boundary=" + parameter + "\n\n--" + boundary +
               "\nContent-Type: image/gif; name=cafe.gif\n" + after + "--" + boundary + "--\n";
    };
    for (const std::string& inner :
         {multipart("=_Part", "\"=_Part\""), multipart("bb", "bb"), multipart("=_Q", "\n \"=_Q\""),
          "Content-Type: image/gif; name=cafe.gif\n" + after}) {
        const Result<Recovery> recovery =
            Recovery::open(std::array{dir.write("m", before + inner + last)}, {}, Texts::left_out);
        ASSERT_TRUE(recovery);
        ASSERT_EQ(recovery->attachments().size(), 2U) << inner;
        const Outcome outcome = recovery->check(recovery->attachments()[0]);
        EXPECT_EQ(recovery->attachments()[0].name, "cafe.gif") << inner;
        EXPECT_EQ(outcome.size, 7U) << inner;
        EXPECT_TRUE(outcome.problems.empty()) << inner;
        EXPECT_EQ(recovery->attachments()[1].name, "b.txt") << inner;
    }
    const std::string encoded = "Content-Type: image/gif; name=\n=3D\"caf=65.gif\"\n" + after;
    const Result<Recovery> recovery =
        Recovery::open(std::array{dir.write("m", before + encoded + last)}, {}, Texts::left_out);
    ASSERT_TRUE(recovery);
    EXPECT_EQ(recovery->attachments().front().name, "cafe.gif") << "one that is encoded";
}

TEST(Recovery, AFileAtTheEndOfACutOffEncodedMessageIsNotCalledWhole) {
    tests::TemporaryDirectory dir;
    const auto open = [&](const std::string& message) {
        const std::string outer =
            "Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: message/rfc822\n"
            "Content-Transfer-Encoding: base64\n\n";
        return Recovery::open(std::array{dir.write("m", outer + base64(message))}, {}, Texts::left_out).value();
    };
    const std::string first =
        "Content-Type: multipart/mixed; boundary=I\n\n--I\nContent-Type: image/gif; name=a.gif\n"
        "Content-Transfer-Encoding: base64\n\nR0lGODlh\n--I\n";
    const std::string second = "Content-Type: text/plain; name=q.txt\n\n";
    const Recovery cut = open(first + second + std::string(201 - (first + second).size() % 3, 'x'));
    ASSERT_EQ(cut.attachments().size(), 2U);
    EXPECT_EQ(cut.check(cut.attachments()[0]).verdict, Verdict::whole);
    EXPECT_EQ(cut.check(cut.attachments()[1]).verdict, Verdict::incomplete);
    EXPECT_THAT(cut.check(cut.attachments()[1]).problems,
                testing::Contains(testing::Field(&Problem::kind, ProblemKind::cut_off_message)));
    EXPECT_TRUE(cut.problems().empty());

    const Recovery nothing = open("Subject: " + std::string(45, 'x'));
    EXPECT_TRUE(nothing.attachments().empty());
    ASSERT_EQ(nothing.problems().size(), 1U);
    EXPECT_EQ(word_of(nothing.problems().front()), "cut-off-message");
    EXPECT_TRUE(open("Subject: " + std::string(46, 'x')).problems().empty()) << "padding vouches for the end";
}

TEST(Recovery, FollowsEncodedMessagesToALimitAndSaysSo) {
    tests::TemporaryDirectory dir;
    const Result<Recovery> deep = Recovery::open(std::array{dir.write("m", encoded_message(5))});
    ASSERT_TRUE(deep);
    ASSERT_EQ(deep->problems().size(), 1U);
    EXPECT_EQ(word_of(deep->problems().front()), "unopened-message");
    EXPECT_EQ(deep->problems().front().at_input, encoded_message(5).find("\n\n", 60) + 2);
    EXPECT_TRUE(Recovery::open(std::array{dir.write("m", encoded_message(4))})->problems().empty());
}

TEST(Recovery, AFileInADamagedEncodedMessageIsNotCalledWhole) {
    tests::TemporaryDirectory dir;
    std::string text = encoded_message(1);
    text.insert(text.find("base64\n\n") + 8 + 40, "\1");
    const Result<Recovery> recovery = Recovery::open(std::array{dir.write("m", text)}, {}, Texts::left_out);
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 1U);
    const Outcome outcome = recovery->check(recovery->attachments().front());
    EXPECT_EQ(outcome.verdict, Verdict::damaged);
    EXPECT_THAT(outcome.problems, testing::Contains(testing::Field(&Problem::kind, ProblemKind::damaged_message)));
    for (const Problem& problem : outcome.problems) {
        EXPECT_EQ(problem.at_input, text.find("base64\n\n") + 8) << "of the message around it";
    }
}

TEST(Recovery, NamesTheInputThatCannotBeOpened) {
    const Result<Recovery> recovery = Recovery::open(std::array{std::string("no-such-file")});
    ASSERT_FALSE(recovery);
    EXPECT_EQ(recovery.error().code, ErrorCode::not_found);
    EXPECT_THAT(recovery.error().text, testing::HasSubstr("no-such-file"));
}

TEST(Recovery, StopsWhenToldTo) {
    tests::TemporaryDirectory dir;
    const std::string in = dir.write("in", "begin 644 a\n" + std::string(3 << 20, '\n'));
    const Result<Recovery> recovery =
        Recovery::open(std::array{in}, [](std::uint64_t, std::uint64_t) { return false; });
    ASSERT_FALSE(recovery);
    EXPECT_EQ(recovery.error().code, ErrorCode::cancelled);
}

const std::string two_files = "begin 777 a;b\n#0V%T\n`\nend\nbegin 644 ../a\n#0V%T\n`\nend\n";

TEST(DecodingLibrary, CountsNamesAndDecodes) {
    tests::TemporaryDirectory dir;
    const std::string in = dir.write("in.uue", two_files);
    DecodingLibrary library;
    ASSERT_EQ(library.GetNumFilesToDecode(in), 2);
    std::string first, second;
    library.GetEncodedFile(first, 0);
    library.GetEncodedFile(second, 1);
    EXPECT_EQ(first, "a_b");
    EXPECT_EQ(second, "a");
    EXPECT_NE(library.DecodeFile(in, first + ";" + second, 1), 0);
    EXPECT_EQ(dir.read("a_b"), "Cat");
    EXPECT_EQ(dir.read("a"), "Cat");
    struct stat status = {};
    ASSERT_EQ(stat(dir.path("a_b").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0111U, 0U);
}

TEST(DecodingLibrary, GivesEachNameOutOnce) {
    tests::TemporaryDirectory dir;
    dir.write("a.txt", "taken");
    DecodingLibrary library;
    std::string first = "a.txt", second = "a.txt";
    library.GetUniqueFileName(first);
    library.GetUniqueFileName(second);
    EXPECT_EQ(first, "a (2).txt");
    EXPECT_EQ(second, "a (3).txt");
}

TEST(DecodingLibrary, NeverReplacesAFileNorFollowsALink) {
    tests::TemporaryDirectory dir;
    const std::string in = dir.write("in.uue", two_files);
    dir.write("target", "precious");
    ASSERT_EQ(symlink("target", "a"), 0);
    DecodingLibrary library;
    EXPECT_NE(library.DecodeFile(in, "target;a", 1), 0);
    EXPECT_EQ(dir.read("target"), "precious");
    EXPECT_EQ(dir.read("target (2)"), "Cat");
    EXPECT_EQ(dir.read("a (2)"), "Cat");
}

TEST(DecodingLibrary, HasNothingToDecodeInPlainText) {
    tests::TemporaryDirectory dir;
    const std::string in = dir.write("in.txt", "Subject: hello\n\nno file here\n");
    DecodingLibrary library;
    EXPECT_EQ(library.GetNumFilesToDecode(in), 0);
    EXPECT_EQ(library.DecodeFile(in, "", 1), 0);
    EXPECT_EQ(library.GetNumFilesToDecode("missing"), 0);
}

}  // namespace
}  // namespace quill::codec
