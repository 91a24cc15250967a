#include "codec/input/tagged_lines.h"

#include "codec/recovery/recover.h"
#include "codec/scanned.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

namespace quill::codec {
namespace {

std::string joined(std::initializer_list<std::string_view> rows, std::string_view end) {
    std::string out;
    for (const std::string_view row : rows) out.append(row).append(end);
    return out;
}

bool has(const Outcome& outcome, std::string_view kind) {
    for (const Problem& problem : outcome.problems) {
        if (word_of(problem) == kind) return true;
    }
    return false;
}

constexpr auto type = "Content-Type: image/jpeg; name=\"cat.jpg\"";
constexpr auto encoding = "Content-Transfer-Encoding: base64";

TEST(TaggedLines, AMailInOneLongLineIsRead) {
    tests::TemporaryDirectory dir;
    for (const std::string end : {"<BR>", "<br>"}) {
        const std::string in =
            dir.write("in", joined({type, encoding, "", "Q2F0cyBh", "bmQgZG9n", "cw=="}, end) + "\r\n");
        const Result<Recovery> recovery = Recovery::open(std::array{in});
        ASSERT_TRUE(recovery);
        ASSERT_EQ(recovery->attachments().size(), 1U);
        const auto written = recovery->write(recovery->attachments()[0], dir.path("out"), files::OnCollision::replace);
        ASSERT_TRUE(written);
        EXPECT_EQ(dir.read("out"), "Cats and dogs");
        EXPECT_EQ(written->outcome.verdict, Verdict::whole);
        EXPECT_TRUE(has(written->outcome, "tagged-lines"));
    }
    const std::string empty = dir.write("in", joined({type, encoding, "", "", ""}, "<BR>"));
    const Result<Recovery> recovery = Recovery::open(std::array{empty});
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 1U);
    EXPECT_EQ(recovery->check(recovery->attachments()[0]).size, 0U);
}

TEST(TaggedLines, PartsAreKeptApartAndTextThatLostItsLineEndsIsDamaged) {
    tests::TemporaryDirectory dir;
    const std::string in = dir.write("in", joined({"Subject: cats", "Content-Type: multipart/mixed; boundary=b", "",
                                                   "--b", "Content-Type: text/plain; name=a.txt", "", "one", "two",
                                                   "--b", type, encoding, "", "Q2F0", "--b--"},
                                                  "<BR>"));
    const Result<Recovery> recovery = Recovery::open(std::array{in});
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 2U);
    EXPECT_EQ(recovery->check(recovery->attachments()[0]).verdict, Verdict::damaged);
    const Outcome cat = recovery->check(recovery->attachments()[1]);
    EXPECT_EQ(cat.size, 3U);
    EXPECT_EQ(cat.verdict, Verdict::whole);
}

TEST(TaggedLines, TagsBetweenRowsOfBase64AreNoneOfIt) {
    const std::string header = joined({type, encoding, ""}, "\r\n");
    for (const std::string rows : {"Q2F0cyBh<BR>bmQgZG9n<BR>cw==<BR>\r\n", "Q2F0cyBh<BR>\r\nbmQgZG9n<br>\r\ncw==\r\n",
                                   "Q2F0cy<BR>BhbmQgZG9ncw==", "Q2F0\r\ncyBh\r\nbmQg<BR>ZG9ncw==<BR>\r\n",
                                   "Q2F0cyBh\r\nbmQgZG9n<BR>\r\ncw==<BR>\r\n\r\n"}) {
        const auto files = tests::scan_and_decode(header + rows);
        ASSERT_EQ(files.size(), 1U);
        EXPECT_EQ(files[0].bytes, "Cats and dogs");
        EXPECT_EQ(files[0].outcome.verdict, Verdict::whole);
        EXPECT_TRUE(files[0].has_problem("tagged-lines"));
    }
    const auto other = tests::scan_and_decode(header + "Q2F0cyBh<hr>bmQgZG9ncw==");
    EXPECT_EQ(other.at(0).outcome.verdict, Verdict::damaged);
}

TEST(TaggedLines, TextBehindRowsOfBase64IsNotTakenForDataUnsaid) {
    const std::string full = "QUJDREVGR0hJSktMQUJDREVGR0hJSktMQUJDREVGR0hJSktM";
    const std::string bytes = "ABCDEFGHIJKLABCDEFGHIJKLABCDEFGHIJKL";
    const std::string more = full + "<br>";
    const struct {
        std::string rows;
        std::string bytes;
        Verdict verdict;
        std::string_view kind;
    } table[] = {
        {full + "\r\n" + more + "Best regards from us all<br>", bytes + bytes, Verdict::whole, "text-after-data"},
        {more + "QUI=<br>\r\nBest regards<br>Anna", bytes + "AB", Verdict::whole, "text-after-data"},
        {more + "QUI=<br>" + more, bytes + "AB" + bytes, Verdict::damaged, "inner-padding"},
        {more + joined({"to be", "continued", "next week"}, "<br>") + more, bytes + bytes, Verdict::damaged,
         "foreign-line"},
        {more + "<br>Anna", bytes + "\x02\x79\xDA", Verdict::damaged, "doubtful-row"},
        {full + "\r\n<br>Anna", bytes + "\x02\x79\xDA", Verdict::damaged, "doubtful-row"},
        {more + "Anna<br>Anna", bytes + "\x02\x79\xDA\x02\x79\xDA", Verdict::damaged, "doubtful-row"},
        {more + "Hannah", bytes + "\x1D\xA9\xE7j", Verdict::damaged, "doubtful-row"},
        {"<br>\r\n<BR> <br>\r\n", "", Verdict::damaged, "no-data"},
        // Tags before their rows, rewrapped rows, and rows with an empty one after each.
        {more + "QUJD<br>" + more + "QUJD<br>QUJDREVG", bytes + "ABC" + bytes + "ABCABCDEF", Verdict::whole,
         "tagged-lines"},
        {full + "\r\n<br>" + full + "\r\n<br>QUJD\r\n", bytes + bytes + "ABC", Verdict::whole, "tagged-lines"},
        {more + "<br>" + more + "<br>QUJD", bytes + bytes + "ABC", Verdict::whole, "tagged-lines"},
    };
    for (const auto& row : table) {
        const auto files = tests::scan_and_decode(joined({type, encoding, ""}, "\r\n") + row.rows);
        ASSERT_EQ(files.size(), 1U);
        EXPECT_EQ(files[0].bytes, row.bytes) << row.rows;
        EXPECT_EQ(files[0].outcome.verdict, row.verdict) << row.rows;
        EXPECT_TRUE(files[0].has_problem(row.kind)) << row.rows;
    }
}

TEST(TaggedLines, ManyRowsAreReadToTheEnd) {
    std::string rows;
    for (int i = 0; i < 200'000; ++i) rows += "QUJD<BR>";
    rows += std::string(1'000'000, ' ') + "<BR>QUJD<BR>";
    const auto files = tests::scan_and_decode(joined({type, encoding, ""}, "\r\n") + rows);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].outcome.size, 600'003U);
    EXPECT_EQ(files[0].outcome.verdict, Verdict::whole);
}

TEST(TaggedLines, NothingBehindAHeaderThatWasNotReadIsNotCalledWhole) {
    const struct {
        std::string text;
        Verdict verdict;
    } table[] = {
        {joined({type, encoding}, "\r\n"), Verdict::incomplete},
        {joined({type, encoding, ""}, "\r\n"), Verdict::whole},  // an empty file
    };
    tests::TemporaryDirectory dir;
    for (const auto& row : table) {
        const Result<Recovery> recovery = Recovery::open(std::array{dir.write("in", row.text)});
        ASSERT_TRUE(recovery);
        ASSERT_EQ(recovery->attachments().size(), 1U);
        const Outcome outcome = recovery->check(recovery->attachments()[0]);
        EXPECT_EQ(outcome.size, 0U);
        EXPECT_EQ(outcome.verdict, row.verdict);
        EXPECT_EQ(has(outcome, "missing-body"), row.verdict == Verdict::incomplete);
    }
}

}  // namespace
}  // namespace quill::codec
