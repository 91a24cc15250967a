#include "codec/recovery/recover.h"
#include "codec/wrap.h"
#include "codec/writing/encode.h"
#include "files/directory.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <string>
#include <tuple>

namespace quill::codec {
namespace {

constexpr std::size_t sample_size = 2500;

std::string read_back(const Recovery& recovery, const Attachment& attachment, const tests::TemporaryDirectory& dir,
                      Outcome& outcome) {
    const auto written = recovery.write(attachment, dir.path("back"), files::OnCollision::replace);
    if (!written) return {};
    outcome = written->outcome;
    return dir.read("back");
}

/// Returns a text that contains `bytes` as cat.bin in a format, with a mail's header around MIME.
std::string encoded(const tests::TemporaryDirectory& dir, const std::string& format, const std::string& bytes) {
    const std::string input = dir.write("cat.bin", bytes);
    EncodeOptions options;
    options.crc = format == "yenc";
    const auto paths = encode_file(input, dir.path("encoded"), *output_format(format), options);
    if (!paths) return {};
    const std::string text = tests::replaced(dir.read("encoded"), "\r\n", "\n");
    files::remove_file(paths->front());
    return text;
}

class Wrapped : public testing::TestWithParam<std::tuple<std::string, tests::Wrap>> {};

TEST_P(Wrapped, ComesOutExactUnderItsName) {
    const auto& [format, wrap] = GetParam();
    tests::TemporaryDirectory dir;
    const std::string bytes = tests::noise(sample_size, 7);
    const std::string text = encoded(dir, format, bytes);
    ASSERT_FALSE(text.empty());
    const Result<Recovery> recovery = Recovery::open(std::array{dir.write("in", wrap.wrap(text))}, {}, Texts::left_out);
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 1U);
    Outcome outcome;
    EXPECT_TRUE(read_back(*recovery, recovery->attachments()[0], dir, outcome) == bytes);
    EXPECT_EQ(recovery->attachments()[0].name, "cat.bin");
    EXPECT_LE(outcome.verdict, Verdict::whole);
}

INSTANTIATE_TEST_SUITE_P(Formats, Wrapped,
                         testing::Combine(testing::Values("uue", "xxe", "mime", "binhex", "yenc"),
                                          testing::ValuesIn(tests::wraps)),
                         [](const auto& test) {
                             return std::string(std::get<1>(test.param).name) + "_" + std::get<0>(test.param);
                         });

/// Unwraps `text` with only the row `kind`.
std::optional<Unwrapped> unwrapped(ProblemKind kind, const std::string& text, const tests::TemporaryDirectory& dir,
                                   Spool& spool) {
    static const auto row = [](ProblemKind name) {
        return std::find_if(wrappings().begin(), wrappings().end(),
                            [&](const Wrapping& wrapping) { return wrapping.kind == name; });
    };
    const Result<files::MappedFile> file = files::MappedFile::open(dir.write("wrapped", text));
    PlainText plain(*file, spool);
    row(kind)->unwrap(file->bytes(), plain);
    return plain.finish();
}

TEST(Wrappings, OffsetsLeadBackToTheWrappedText) {
    tests::TemporaryDirectory dir;
    const std::string text =
        "Subject: a cat\n\nbegin 644 a\n" + tests::text_of(tests::uu_lines("A cat & a dog")) + "end\n";
    const struct {
        ProblemKind kind;
        std::string wrapped;
        std::size_t width;
    } table[] = {
        {ProblemKind::wide_text, tests::utf16(text, false, true), 2},
        {ProblemKind::wide_text, tests::utf16(text, true, false), 2},
        {ProblemKind::tagged_lines, tests::page("<pre>" + tests::escaped(text) + "</pre>"), 1},
        {ProblemKind::tagged_lines, tests::page(tests::each_line(text, "<p>", "</p>")), 1},
    };
    for (const auto& row : table) {
        Spool spool;
        const std::optional<Unwrapped> plain = unwrapped(row.kind, row.wrapped, dir, spool);
        ASSERT_TRUE(plain);
        const std::string_view bytes = plain->text.bytes();
        EXPECT_THAT(std::string(bytes), testing::HasSubstr(text));
        std::uint64_t last = 0;
        for (std::uint64_t at = 0; at < bytes.size(); ++at) {
            const auto origin = static_cast<std::uint64_t>(plain->map.origin_of(PlainOffset{at}));
            ASSERT_LT(origin, row.wrapped.size());
            EXPECT_GE(origin, last);
            last = origin;
            const std::string_view there = std::string_view(row.wrapped).substr(origin, row.width);
            const bool made = bytes[at] == '\n' || there[0] == '&' || there[0] == '<';
            EXPECT_TRUE(made || there.find(bytes[at]) != there.npos)
                << at << " of " << report::traits_of(row.kind).word;
        }
    }
}

TEST(Wrappings, PlainTextIsNotCopied) {
    tests::TemporaryDirectory dir;
    const std::string texts[] = {
        "Subject: a cat\n\nbegin 644 a\n" + tests::text_of(tests::uu_lines(tests::noise(5000))) + "end\n",
        "From: Anna <anna@cats.example>\n\n1 < 2 & 3 > 2, says Anna <anna@cats.example>\n",
        "begin 644 &amp;.txt\n#0V%T\n`\nend\n",
        "\xEF\xBB\xBFhello\n\xEF\xBB\xBFworld\n",
        std::string(300, '\0'),
        "",
    };
    for (const std::string& text : texts) {
        Result<Sources> sources = Sources::open(std::array{dir.write("in", text)});
        ASSERT_TRUE(sources);
        EXPECT_EQ(sources->unwrap(0, {}), 0U) << text.substr(0, 60);
    }
}

TEST(Wrappings, AProblemIsAtItsPlaceInTheUsersFile) {
    tests::TemporaryDirectory dir;
    const std::string bytes = tests::noise(sample_size);
    std::string text =
        "Content-Type: image/gif; name=a.gif\nContent-Transfer-Encoding: base64\n\n" + tests::base64(bytes);
    text[800] = '!';
    const Result<Recovery> recovery = Recovery::open(std::array{dir.write("in", tests::utf16(text, false, true))});
    ASSERT_TRUE(recovery);
    ASSERT_EQ(recovery->attachments().size(), 1U);
    const Outcome outcome = recovery->check(recovery->attachments()[0]);
    EXPECT_EQ(outcome.verdict, Verdict::damaged);
    bool near = false;
    for (const Problem& problem : outcome.problems) {
        near =
            near || (report::grade_of(problem) == Grade::damaged && problem.at_input > 1400 && problem.at_input < 1800);
    }
    EXPECT_TRUE(near);
}

TEST(Wrappings, ATextPartIsWrittenAsTheUsersFileHasIt) {
    tests::TemporaryDirectory dir;
    const std::string type = "Content-Type: text/html; name=cat.html\n\n";
    for (const std::string html :
         {"<html><body><p>A cat &amp; a dog</p>\n</body></html>", "<pre>\n> a\n</pre>\n\n<br>"}) {
        const std::string mails[] = {
            type + html,
            "Content-Type: multipart/mixed; boundary=b\n\n--b\n" + type + html + "\n--b--\n",
        };
        for (const std::string& mail : mails) {
            const Result<Recovery> recovery = Recovery::open(std::array{dir.write("in", mail)});
            ASSERT_TRUE(recovery);
            ASSERT_EQ(recovery->attachments().size(), 1U);
            Outcome outcome;
            EXPECT_EQ(read_back(*recovery, recovery->attachments()[0], dir, outcome), html);
            EXPECT_EQ(outcome.verdict, Verdict::whole);
        }
    }
}

TEST(Wrappings, ATextThatCouldBeReadInTwoWaysIsNotCalledWhole) {
    tests::TemporaryDirectory dir;
    std::string wide = tests::utf16("Content-Type: text/plain; name=a.txt\n\nCaf", false, true);
    wide += std::string("\xE9\0\n\0", 4);
    const std::string in[] = {wide, "Content-Type: text/plain; name=a.txt<BR>Subject: a<BR><BR>one<BR>two<BR>"};
    for (const std::string& text : in) {
        const Result<Recovery> recovery = Recovery::open(std::array{dir.write("in", text)});
        ASSERT_TRUE(recovery);
        ASSERT_EQ(recovery->attachments().size(), 1U);
        EXPECT_EQ(recovery->check(recovery->attachments()[0]).verdict, Verdict::damaged);
    }
}

}  // namespace
}  // namespace quill::codec
