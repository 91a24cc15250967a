#include "codec/recovery/recover.h"
#include "codec/scanned.h"
#include "codec/writing/encode.h"
#include "files/directory.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using tests::TemporaryDirectory;

struct Decoded {
    std::string name;
    std::string bytes;
    Verdict verdict = Verdict::whole;
    std::vector<std::string> problems;  ///< their kinds
    std::vector<std::string> sources;
};

/// Returns the files in `paths`, read together.
std::vector<Decoded> decode_all(const std::vector<std::string>& paths) {
    std::vector<Decoded> out;
    const auto recovery = Recovery::open(paths);
    EXPECT_TRUE(recovery);
    if (!recovery) return out;
    for (const Attachment& attachment : recovery->attachments()) {
        if (attachment.message_text) continue;
        const auto written = recovery->write(attachment, "decoded", files::OnCollision::choose_name);
        if (!written) {
            ADD_FAILURE() << written.error().text;
            continue;
        }
        Decoded& one = out.emplace_back();
        one.name = attachment.name;
        one.bytes = files::read_file(written->path).value();
        one.verdict = written->outcome.verdict;
        one.sources = written->sources;
        for (const Problem& problem : written->outcome.problems) one.problems.emplace_back(word_of(problem));
        files::remove_file(written->path);
    }
    return out;
}

Decoded decode_one(const std::string& text) {
    const TemporaryDirectory dir;
    const std::vector<Decoded> all = decode_all({dir.write("in", text)});
    EXPECT_EQ(all.size(), 1U);
    return all.empty() ? Decoded{} : all[0];
}

/// A file of 10 bytes in five posts of two, in a separate directory.
class YencParts : public testing::Test {
  protected:
    void SetUp() override {
        dir.write("digits", "0123456789");
        const auto written = encode_file("digits", "p.ync", *output_format("yenc"), {.part_size = 2, .crc = true});
        ASSERT_TRUE(written);
        parts = *written;
    }

    /// Returns the result of decoding these parts, counted from 1, in this order.
    Decoded decoded(const std::vector<std::size_t>& numbers) const {
        std::vector<std::string> paths;
        for (const std::size_t number : numbers) paths.push_back(parts[number - 1]);
        const std::vector<Decoded> all = decode_all(paths);
        EXPECT_EQ(all.size(), 1U);
        return all.empty() ? Decoded{} : all[0];
    }

    void change(std::size_t number, std::string_view from, std::string_view to) const {
        std::string text = dir.read(parts[number - 1]);
        const std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        dir.write(parts[number - 1], text.replace(at, from.size(), to));
    }

    TemporaryDirectory dir;
    std::vector<std::string> parts;
};

TEST_F(YencParts, AnyOrderGivesTheFile) {
    const Decoded file = decoded({3, 1, 5, 2, 4});
    EXPECT_EQ(file.name, "digits");
    EXPECT_EQ(file.bytes, "0123456789");
    EXPECT_EQ(file.verdict, Verdict::verified);
    EXPECT_THAT(file.problems, IsEmpty());
    EXPECT_THAT(file.sources, ElementsAre("p.3.ync", "p.1.ync", "p.5.ync", "p.2.ync", "p.4.ync"));
}

TEST_F(YencParts, AllInOneTextGiveTheFileToo) {
    std::string text;
    for (const std::size_t number : {2U, 1U, 3U, 5U, 4U}) text += "Some words\r\n\r\n" + dir.read(parts[number - 1]);
    EXPECT_EQ(decode_one(text).bytes, "0123456789");
}

TEST_F(YencParts, AMissingPartIsAGapOfZerosThatIsTold) {
    const Decoded file = decoded({1, 2, 4, 5});
    EXPECT_EQ(file.bytes, std::string("0123\0\0"
                                      "6789",
                                      10));
    EXPECT_EQ(file.verdict, Verdict::incomplete);
    EXPECT_THAT(file.problems, ElementsAre("missing-part"));
}

TEST_F(YencParts, AMissingEndIsToldAndNotFilled) {
    const Decoded file = decoded({1, 2});
    EXPECT_EQ(file.bytes, "0123");
    EXPECT_EQ(file.verdict, Verdict::incomplete);
}

TEST_F(YencParts, APartAloneIsItsOwnBytes) {
    const Decoded file = decoded({3});
    EXPECT_EQ(file.bytes, "45");
    EXPECT_EQ(file.verdict, Verdict::incomplete);
    EXPECT_THAT(file.problems, ElementsAre("missing-part"));
}

TEST_F(YencParts, OfAPartThatIsThereTwiceTheGoodOneIsTaken) {
    change(2, "\\]", "\\Q");
    const std::string damaged = dir.read(parts[1]);
    const Decoded bad = decoded({1, 2, 3, 4, 5});
    EXPECT_EQ(bad.verdict, Verdict::damaged);
    EXPECT_THAT(bad.problems, ElementsAre("bad-crc", "bad-crc")) << "of the part, and of the file";
    change(2, "\\Q", "\\]");
    dir.write("again", damaged);
    parts.push_back("again");
    for (const std::vector<std::size_t>& order : {std::vector<std::size_t>{1, 2, 6, 3, 4, 5}, {6, 5, 4, 3, 2, 1}}) {
        const Decoded good = decoded(order);
        EXPECT_EQ(good.bytes, "0123456789");
        EXPECT_EQ(good.verdict, Verdict::verified);
        EXPECT_THAT(good.problems, ElementsAre("damaged-copy"));
    }
}

TEST_F(YencParts, OverlappingPartsAreTold) {
    change(3, "begin=5 end=6", "begin=4 end=5");
    const Decoded file = decoded({1, 2, 3, 4, 5});
    EXPECT_EQ(file.bytes, std::string("01235\0"
                                      "6789",
                                      10));
    EXPECT_THAT(file.problems, testing::Contains("overlapping-parts"));
    EXPECT_NE(file.verdict, Verdict::verified);
}

TEST_F(YencParts, PartsWithoutTheirPlaceGoByTheirNumbers) {
    for (std::size_t number = 1; number <= 5; ++number) change(number, "=ypart ", "=yfoo ");
    const Decoded file = decoded({5, 4, 3, 2, 1});
    EXPECT_EQ(file.bytes, "0123456789");
    EXPECT_EQ(file.verdict, Verdict::verified);
    EXPECT_EQ(decoded({2, 1, 4, 5}).verdict, Verdict::incomplete);
}

TEST_F(YencParts, AStatedPlaceBeyondAllReasonMakesNoHugeFile) {
    change(5, "begin=9 end=10", "begin=9000000000000000000 end=9000000000000000001");
    const Decoded file = decoded({1, 2, 3, 4, 5});
    EXPECT_EQ(file.bytes, "0123456789");
    EXPECT_EQ(file.verdict, Verdict::incomplete);
}

TEST_F(YencParts, AnotherFileOfTheSameNameAndSizeStaysApart) {
    dir.make_directory("other");
    dir.write("other/digits", "9876543210");
    const auto others = encode_file("other/digits", "o.ync", *output_format("yenc"), {.part_size = 2, .crc = true});
    ASSERT_TRUE(others);
    std::vector<std::string> all = parts;
    all.insert(all.end(), others->begin(), others->end());
    const std::vector<Decoded> files = decode_all(all);
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].bytes, "0123456789");
    EXPECT_EQ(files[1].bytes, "9876543210");
}

TEST_F(YencParts, APartsOwnCrcMayStandWhereTheFilesBelongs) {
    for (std::size_t number = 1; number <= 4; ++number) change(number, " pcrc32=", " crc32=");
    change(5, " crc32=", " xcrc32=");
    EXPECT_EQ(decoded({1, 2, 3, 4, 5}).verdict, Verdict::verified);
}

TEST(YencScan, ATrailerWithoutItsPostIsReported) {
    const auto files =
        tests::scan_and_decode("Subject: x\n\nA line of the post\n=yend size=419 part=2 pcrc32=c055019b\n");
    ASSERT_EQ(files.size(), 1U);
    EXPECT_TRUE(files[0].has_problem("missing-begin"));
    EXPECT_EQ(files[0].outcome.verdict, Verdict::incomplete);
    EXPECT_TRUE(tests::scan_and_decode("Subject: x\n\nThe last line is\n=yend size=123\n").empty());
}

/// Posts of `part`s of one byte with wrong or missing statements.
TEST(YencScan, PartsThatMayBeOfOtherFilesOrLackTheLastAreNotVouchedFor) {
    const auto named = [](const std::string& begin, const std::string& place, const std::string& byte,
                          const std::string& end) {
        return "=ybegin " + begin + " line=128 name=a\r\n" + place + byte + "\r\n=yend size=1 " + end + "\r\n";
    };
    const std::string first = "=ypart begin=1 end=1\r\n", second = "=ypart begin=2 end=2\r\n";
    const struct {
        std::string what;
        std::string text;
        std::string bytes;
        Verdict verdict;
        std::string kind;
    } table[] = {
        {"the total says that one is missing, and no size",
         named("part=1 total=3", first, "k", "") + named("part=2 total=3", second, "l", ""), "AB", Verdict::incomplete,
         "missing-part"},
        {"nothing says how many there are", named("part=1", first, "k", "") + named("part=2", second, "l", ""), "AB",
         Verdict::damaged, "unnumbered-parts"},
        {"a gap between numbers", named("part=1 size=2", "", "k", "") + named("part=3 size=2", "", "l", ""), "AB",
         Verdict::incomplete, "missing-part"},
        {"two that differ and state no checksum",
         named("part=1 total=2 size=2", first, "k", "") + named("part=1 total=2 size=2", first, "l", "") +
             named("part=2 total=2 size=2", second, "m", ""),
         "AC", Verdict::damaged, "parts-differ"},
        {"a size that is the part's own",
         named("part=1 total=2 size=1", first, "k", "") + named("part=2 total=2 size=1", second, "l", ""), "AB",
         Verdict::verified, ""},
        {"a checksum with 0x that disagrees", named("size=1", "", "k", "crc32=0x11111111"), "A", Verdict::damaged,
         "bad-crc"},
        {"a checksum with 0x that agrees", named("size=1", "", "k", "crc32=0xd3d99e8b"), "A", Verdict::verified, ""},
        {"lines of other lengths, and the size agrees",
         "=ybegin line=2 size=6 name=a\r\nkl\r\nklm\r\nk\r\n=yend size=6\r\n", "ABABCA", Verdict::damaged,
         "uneven-lines"},
        {"a pair at the end of a line", "=ybegin line=2 size=4 name=a\r\nk=}\r\nkl\r\n=yend size=4\r\n",
         std::string("A\x13"
                     "AB"),
         Verdict::verified, ""},
        {"lines by their bytes", "=ybegin line=2 size=5 name=a\r\n=}=}\r\nkl\r\nk\r\n=yend size=5\r\n",
         std::string("\x13\x13"
                     "ABA"),
         Verdict::verified, ""},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.what);
        const Decoded file = decode_one(row.text);
        EXPECT_EQ(file.bytes, row.bytes);
        EXPECT_EQ(name_of(file.verdict), name_of(row.verdict));
        if (!row.kind.empty()) {
            EXPECT_THAT(file.problems, testing::Contains(row.kind));
        }
    }
}

constexpr int none = -1;

/// What a post of one of the three bytes "ABC" states.
struct NumberedPart {
    int number = none;
    int total = 0;  ///< not stated if 0
    int place = 0;  ///< of the byte, from 1; not stated if 0
};

std::string post_of(const NumberedPart& part, int byte, bool crc, bool whole_crc) {
    constexpr std::string_view crcs[] = {"d3d99e8b", "4ad0cf31", "3dd7ffa7"};
    std::string text = "=ybegin";
    if (part.number != none) text += " part=" + std::to_string(part.number);
    if (part.total > 0) text += " total=" + std::to_string(part.total);
    text += " line=128 size=3 name=a\r\n";
    const std::string place = std::to_string(part.place);
    if (part.place > 0) text.append("=ypart begin=").append(place).append(" end=").append(place).append("\r\n");
    text += std::string(1, static_cast<char>('k' + byte)) + "\r\n=yend size=1";
    if (crc) text += " pcrc32=" + std::string(crcs[byte]);
    if (whole_crc) text += " crc32=a3830348";
    return text + "\r\n";
}

TEST(YencNumbers, AGapIsAGapUnlessTheChecksumOfTheWholeAgrees) {
    const struct {
        std::string what;
        std::vector<NumberedPart> parts;
        Verdict verdict;
    } table[] = {
        {"all there", {{1, 3, 1}, {2, 3, 2}, {3, 3, 3}}, Verdict::verified},
        {"no total", {{1, 0, 1}, {2, 0, 2}, {3, 0, 3}}, Verdict::verified},
        {"from 0", {{0, 3, 1}, {1, 3, 2}, {2, 3, 3}}, Verdict::verified},
        {"from 0, and the last is missing", {{0, 4, 1}, {1, 4, 2}, {2, 4, 3}}, Verdict::incomplete},
        {"no numbers and no totals", {{none, 0, 1}, {none, 0, 2}, {none, 0, 3}}, Verdict::verified},
        {"no numbers, the total fits", {{none, 3, 1}, {none, 3, 2}, {none, 3, 3}}, Verdict::verified},
        {"no numbers, and a larger total", {{none, 5, 1}, {none, 5, 2}, {none, 5, 3}}, Verdict::incomplete},
        {"some numbers, and a larger total", {{1, 5, 1}, {none, 5, 2}, {5, 5, 3}}, Verdict::incomplete},
        {"a larger total", {{1, 5, 1}, {2, 5, 2}, {3, 5, 3}}, Verdict::incomplete},
        {"a larger total in one of them", {{1, 3, 1}, {2, 5, 2}, {3, 3, 3}}, Verdict::incomplete},
        {"the third is missing", {{1, 4, 1}, {2, 4, 2}, {4, 4, 3}}, Verdict::incomplete},
        {"the first is missing", {{2, 4, 1}, {3, 4, 2}, {4, 4, 3}}, Verdict::incomplete},
        {"one is missing, and no total", {{1, 0, 1}, {3, 0, 2}, {4, 0, 3}}, Verdict::incomplete},
        {"without places", {{1, 5, 0}, {2, 5, 0}, {3, 5, 0}}, Verdict::incomplete},
        {"without places, one is missing", {{1, 4, 0}, {3, 4, 0}, {4, 4, 0}}, Verdict::incomplete},
    };
    for (const auto& row : table) {
        for (const bool crc : {true, false}) {
            SCOPED_TRACE(row.what + (crc ? ", with CRCs" : ""));
            std::string text;
            for (int byte = 0; byte < 3; ++byte)
                text += post_of(row.parts[static_cast<std::size_t>(byte)], byte, crc, false);
            const Decoded file = decode_one(text);
            EXPECT_EQ(file.bytes, "ABC");
            EXPECT_EQ(name_of(file.verdict), name_of(row.verdict));
        }
        SCOPED_TRACE(row.what + ", with the CRC of the whole");
        std::string text;
        for (int byte = 0; byte < 3; ++byte)
            text += post_of(row.parts[static_cast<std::size_t>(byte)], byte, true, byte == 2);
        const Decoded file = decode_one(text);
        EXPECT_EQ(file.bytes, "ABC");
        EXPECT_EQ(name_of(file.verdict), "verified");
    }
}

TEST(YencNumbers, APostAloneIsNotTheFileThatItNumbersFurtherPartsOf) {
    const struct {
        std::string begin;
        Verdict verdict;
    } table[] = {
        {"part=1 total=1", Verdict::verified},
        {"part=1", Verdict::verified},
        {"part=2 total=2", Verdict::incomplete},
        {"part=1 total=2", Verdict::incomplete},
        {"part=2", Verdict::incomplete},
        {"total=2", Verdict::incomplete},
        {"part=18446744073709551615", Verdict::incomplete},
    };
    for (const auto& row : table) {
        for (const std::string place : {"", "=ypart begin=1 end=1\r\n"}) {
            SCOPED_TRACE(row.begin + place);
            const Decoded file = decode_one("=ybegin " + row.begin + " line=128 size=1 name=a\r\n" + place +
                                            "k\r\n=yend size=1 pcrc32=d3d99e8b crc32=d3d99e8b\r\n");
            EXPECT_EQ(file.bytes, "A");
            EXPECT_EQ(name_of(file.verdict), name_of(row.verdict));
        }
    }
}

TEST(YencNumbers, APartWithoutBytesCounts) {
    const auto part = [](const std::string& number, const std::string& place, const std::string& data) {
        return "=ybegin part=" + number + " total=2 line=128 size=1 name=a\r\n=ypart " + place + "\r\n" + data;
    };
    const Decoded file = decode_one(part("1", "begin=1 end=0", "=yend size=0 pcrc32=00000000\r\n") +
                                    part("2", "begin=1 end=1", "k\r\n=yend size=1 pcrc32=d3d99e8b\r\n"));
    EXPECT_EQ(file.bytes, "A");
    EXPECT_EQ(name_of(file.verdict), "verified");
}

TEST(YencScan, PartsGoToTheFileWhoseChecksumTheyState) {
    const auto part = [](int number, const std::string& byte, const std::string& crcs) {
        const std::string n = std::to_string(number);
        return "=ybegin part=" + n + " total=2 size=2 line=128 name=a\r\n=ypart begin=" + n + " end=" + n + "\r\n" +
               byte + "\r\n=yend size=1 " + crcs + "\r\n";
    };
    const TemporaryDirectory dir;
    const auto with_crc = [&](const std::string& a, const std::string& b) {
        return decode_all(
            {dir.write("in", part(1, "k", "pcrc32=d3d99e8b" + a) + part(1, "m", "pcrc32=3dd7ffa7" + b) +
                                 part(2, "n", "pcrc32=a3b36a04" + b) + part(2, "l", "pcrc32=4ad0cf31" + a))});
    };
    const auto told_apart = with_crc(" crc32=30694c07", " crc32=eb3c8bb0");
    ASSERT_EQ(told_apart.size(), 2U);
    EXPECT_EQ(told_apart[0].bytes, "AB");
    EXPECT_EQ(told_apart[1].bytes, "CD");
    const auto mixed = with_crc("", "");
    ASSERT_EQ(mixed.size(), 2U);
    for (const Decoded& file : mixed) EXPECT_EQ(file.verdict, Verdict::damaged) << file.bytes;
}

TEST(YencScan, ASizeThatThePartsExceedDoesNotSayWhereTheFileEnds) {
    const TemporaryDirectory dir;
    for (const bool placed : {false, true}) {
        const auto part = [&](int number, const std::string& byte) {
            const std::string n = std::to_string(number);
            return "=ybegin part=" + n + " line=128 size=1 name=a\r\n" +
                   (placed ? "=ypart begin=" + n + " end=" + n + "\r\n" : "") + byte + "\r\n=yend size=1\r\n";
        };
        const auto files = decode_all({dir.write("in", part(1, "k") + part(2, "l"))});
        ASSERT_EQ(files.size(), 1U);
        EXPECT_EQ(files[0].bytes, "AB");
        EXPECT_EQ(name_of(files[0].verdict), "damaged");
        EXPECT_THAT(files[0].problems, testing::Contains("unnumbered-parts"));
    }
}

TEST(YencScan, SeveralFilesInOneTextAreAllFound) {
    const std::string post = "words\n=ybegin line=128 size=1 name=a\nk\n=yend size=1\nmore\n";
    const TemporaryDirectory dir;
    const auto files =
        decode_all({dir.write("in", post + "=ybegin line=128 size=2 name=b\nkl\n=yend size=2\n" + post)});
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files[0].bytes, "A");
    EXPECT_EQ(files[1].bytes, "AB");
    EXPECT_EQ(files[2].name, "a");
}

TEST(YencScan, ALoneDotBeforeATrailerIsData) {
    EXPECT_EQ(decode_one("=ybegin line=1 size=2 name=a\r\nk\r\n.\r\n=yend size=2\r\n").bytes, "A\x04");
}

TEST(YencScan, APartOfAMessageThatHoldsAPostGivesTheFileOnly) {
    const TemporaryDirectory dir;
    const std::string post = "=ybegin line=128 size=1 name=a.bin\r\nk\r\n=yend size=1\r\n";
    for (const std::string encoding : {"x-yencode", "8bit", "binary"}) {
        const auto files =
            decode_all({dir.write("in",
                                  "MIME-Version: 1.0\r\nContent-Type: multipart/mixed; "
                                  "boundary=b\r\n\r\n--b\r\nContent-Type: text/plain\r\n\r\n"
                                  "Hello\r\n--b\r\nContent-Type: application/octet-stream; name=\"a.bin\"\r\n"
                                  "Content-Transfer-Encoding: " +
                                      encoding + "\r\n\r\n" + post + "\r\n--b--\r\n")});
        ASSERT_EQ(files.size(), 1U) << encoding;
        EXPECT_EQ(files[0].bytes, "A");
        EXPECT_EQ(files[0].name, "a.bin");
    }
}

TEST(YencScan, APostThatBreaksOffEndsWhereItsMessageDoes) {
    const std::string cut = "=ybegin line=128 size=99 name=a\r\nkl\r\n";
    for (const std::string behind : {"\r\nFrom: someone\r\n", ".\r\n221 Bye\r\n", "--b--\r\n", ""}) {
        const Decoded file = decode_one(
            "Content-Type: multipart/mixed; boundary=b\r\nMIME-Version: 1.0\r\n\r\n--b\r\n\r\n" + cut + behind);
        EXPECT_EQ(file.bytes, "AB") << behind;
        EXPECT_EQ(file.verdict, Verdict::incomplete);
    }
}

TEST(YencScan, AHeaderWithoutANameTakesTheSubjectsOrWhatTheBytesTell) {
    const std::string post =
        "=ybegin part=1 total=1 line=128 size=3 name=\r\n=ypart begin=1 end=3\r\nqsp\r\n=yend size=3\r\n";
    EXPECT_EQ(decode_one("Subject: \"my cat.gif\" yEnc (1/1)\r\nFrom: a@b.example\r\n\r\n" + post).name, "my cat.gif");
    EXPECT_EQ(decode_one("Subject: mycat.gif yEnc (1/1)\r\nFrom: a@b.example\r\n\r\n" + post).name, "mycat.gif");
    EXPECT_THAT(decode_one(post).name, HasSubstr("attachment"));
}

TEST(YencScan, DotsComeOffWhereTheChecksumThenAgreesAndElseStay) {
    // ".A.": 4, 23, 4
    const std::string agrees = "=ybegin line=2 size=3 name=a\r\n..A\r\n..\r\n=yend size=3 crc32=";
    Decoded file = decode_one(agrees + "1f5d23c4\r\n");
    EXPECT_EQ(file.bytes, "\x04\x17\x04") << "the checksum agrees with neither, and the size decides";
    EXPECT_EQ(file.verdict, Verdict::damaged);
    file = decode_one(agrees + "faa63141\r\n");
    EXPECT_EQ(file.bytes, "\x04\x17\x04");
    EXPECT_EQ(file.verdict, Verdict::verified);
    EXPECT_THAT(file.problems, ElementsAre("dots-added"));
    file = decode_one("=ybegin line=3 size=5 name=a\r\n..A\r\n..\r\n=yend size=5\r\n");
    EXPECT_EQ(file.bytes, "\x04\x04\x17\x04\x04") << "the size agrees as it stands";
}

}  // namespace
}  // namespace quill::codec
