#include "codec/tnef/tnef.h"

#include "codec/encoded.h"
#include "codec/recovery/recover.h"
#include "support/temporary_directory.h"
#include "support/tnef_stream.h"

#include <gtest/gtest.h>

#include <array>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

using namespace tests::tnef;
using testing::ElementsAre;
using tests::base64;

constexpr std::uint32_t string8 = 0x1E, unicode = 0x1F, binary = 0x102, object = 0x0D;
constexpr std::uint32_t data_id = 0x3701, file_name = 0x3704, long_name = 0x3707;

std::string mail(const std::string& winmail) {
    return "MIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=b\n\n--b\n"
           "Content-Type: application/ms-tnef; name=winmail.dat\nContent-Transfer-Encoding: base64\n\n" +
           base64(winmail) + "\n--b--\n";
}

/// What came out of `input`: "name=bytes verdict" of each result, problems of the run as their words.
std::vector<std::string> results(const std::string& input, Texts texts = Texts::left_out) {
    tests::TemporaryDirectory dir;
    const Result<Recovery> recovery = Recovery::open(std::array{dir.write("in", input)}, {}, texts);
    std::vector<std::string> out;
    for (const Attachment& file : recovery->attachments()) {
        const Result<Recovered> written = recovery->write(file, dir.path("out"), files::OnCollision::replace);
        if (!written) {
            out.push_back(file.name + " unwritten");
            continue;
        }
        const std::string bytes = file.name == "winmail.dat" ? "..." : dir.read("out");
        out.push_back(file.name + "=" + bytes + " " + std::string(name_of(written->outcome.verdict)));
    }
    for (const Problem& problem : recovery->problems()) out.emplace_back(word_of(problem));
    return out;
}

TEST(Tnef, FilesOfAStreamTakeItsPlace) {
    const std::string winmail = stream(attachment("a.txt", "one") + attachment("b.txt", "two"));
    const auto files = ElementsAre("a.txt=one verified", "b.txt=two verified");
    EXPECT_THAT(results(mail(winmail)), files);
    EXPECT_THAT(results(winmail), files) << "as an input";
    EXPECT_THAT(results(winmail + "\r\n"), files);
}

TEST(Tnef, TheLongUnicodeNameCountsMost) {
    const std::string title8 = title("TITLE~1.TXT");
    const std::string wide_name = property(unicode, long_name, wide("wide name.txt"));
    const std::string narrow = property(string8, long_name, std::string("narrow \xE9.txt\0", 14));
    const std::string short_name = property(unicode, file_name, wide("SHORT.TXT"));
    const auto name_with = [&](const std::string& attributes) {
        return results(mail(stream(begin_attachment() + data("x") + attributes)));
    };
    EXPECT_THAT(name_with(title8 + attachment_properties({narrow, wide_name})),
                ElementsAre("wide name.txt=x verified"));
    EXPECT_THAT(name_with(title8 + attachment_properties({short_name, narrow})),
                ElementsAre("narrow \xC3\xA9.txt=x verified"));
    EXPECT_THAT(name_with(title8 + attachment_properties({short_name})), ElementsAre("TITLE~1.TXT=x verified"));
    EXPECT_THAT(name_with(attachment_properties({short_name})), ElementsAre("SHORT.TXT=x verified"));
    EXPECT_THAT(name_with(title("..\\..\\etc/evil;x.txt")), ElementsAre("evil_x.txt=x verified"));
    EXPECT_THAT(name_with(""), ElementsAre("attachment.bin=x verified"));
}

TEST(Tnef, BytesMayLieInAProperty) {
    const std::string list =
        attachment_properties({property(0x101E, 0x3010, "several"), number(0x0003, 2) + number(0x3705, 2) + number(1),
                               number(0x001F, 2) + number(0x8001, 2) + std::string(16, 'g') + number(1) + number(6) +
                                   wide("ab") + "\0\0" + number(1) + number(0),
                               property(binary, data_id, "bytes"), property(string8, long_name, "p.bin")});
    EXPECT_THAT(results(mail(stream(begin_attachment() + list))).front(), testing::HasSubstr("winmail.dat"))
        << "the padding of the name is short by two, and the list can't be read";
    const std::string good =
        attachment_properties({number(0x001F, 2) + number(0x8001, 2) + std::string(16, 'g') + number(1) + number(6) +
                                   wide("ab") + std::string(2, '\0') + number(1) + number(0),
                               property(binary, data_id, "bytes"), property(string8, long_name, "p.bin")});
    EXPECT_THAT(results(mail(stream(begin_attachment() + good))), ElementsAre("p.bin=bytes verified"));
}

TEST(Tnef, AMessageWithinIsOpened) {
    const auto around = [](const std::string& inner) {
        return stream(begin_attachment() + attachment_properties({property(object, data_id, message_object(inner)),
                                                                  property(unicode, long_name, wide("forwarded"))}));
    };
    const std::string inner = stream(attachment("in.txt", "inner"));
    EXPECT_THAT(results(mail(around(inner))), ElementsAre("in.txt=inner verified"));
    EXPECT_THAT(results(mail(around(stream("")))), ElementsAre("winmail.dat=... whole", "unopened-message"));
    EXPECT_THAT(results(mail(around(around(around(around(inner)))))),
                ElementsAre("winmail.dat=... whole", "unopened-message"));
}

TEST(Tnef, AWrongSumDamagesTheFileThatItIsOf) {
    std::string winmail = stream(attachment("a.txt", "one") + attachment("b.txt", "two"));
    winmail[winmail.find("one")] = 'O';
    EXPECT_THAT(results(mail(winmail)), ElementsAre("a.txt=One damaged", "b.txt=two verified"));
}

TEST(Tnef, NoCutStreamIsCalledWhole) {
    const std::string last = attachment("b.txt", "second file");
    const std::string winmail = stream(attachment("a.txt", "one") + last);
    const std::size_t data_begin = winmail.find("second file");
    for (std::size_t size = winmail.size() - last.size() + 1; size < winmail.size(); ++size) {
        const std::vector<std::string> found = results(mail(winmail.substr(0, size)));
        if (size == data_begin + 13 || size == winmail.size() - last.size() + begin_attachment().size()) continue;
        ASSERT_GE(found.size(), 3U) << size;
        EXPECT_EQ(found[0], "winmail.dat=... incomplete") << size;
        EXPECT_EQ(found[1], "a.txt=one verified") << size;
        EXPECT_EQ(found.back(), "cut-off") << size;
        if (size <= data_begin || size >= data_begin + 13) continue;
        EXPECT_THAT(found[2], testing::EndsWith("incomplete")) << size;
    }
}

TEST(Tnef, AWrongLengthIsNotFollowedBlindly) {
    const std::string good = stream(attachment("a.txt", "one"));
    for (const std::uint32_t length : {0U, 2U, 4U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        std::string winmail = good;
        winmail.replace(winmail.find("one") - 4, 4, number(length));
        const std::vector<std::string> found = results(mail(winmail));
        EXPECT_EQ(found.front(), "winmail.dat=... incomplete") << length;
        for (const std::string& result : found) EXPECT_THAT(result, testing::Not(testing::EndsWith("verified")));
    }
}

TEST(Tnef, TextsOfTheMessageAreOfferedOnRequest) {
    const std::string body = attribute(1, 0x0002800C, std::string("Hello\0", 6));
    const std::string winmail = mail(stream(body + attachment("a", "x")));
    EXPECT_THAT(results(winmail), ElementsAre("a=x verified"));
    EXPECT_THAT(results(winmail, Texts::kept), ElementsAre("message.txt=Hello verified", "a=x verified"));
    EXPECT_THAT(results(mail(stream(body))), ElementsAre("winmail.dat=... whole")) << "no file in it";
}

TEST(Tnef, DamageAroundTheStreamDamagesItsFiles) {
    std::string text = mail(stream(attachment("a.txt", tests::noise(300))));
    text.insert(text.find("base64\n\n") + 8 + 100, "\1");
    for (const std::string& result : results(text)) EXPECT_THAT(result, testing::Not(testing::EndsWith("verified")));
}

TEST(Tnef, ListsNoMoreFilesThanAskedFor) {
    std::string attributes;
    for (int i = 0; i < 5'000; ++i) attributes += attachment("a", "x");
    const tnef::Contents contents = tnef::read(stream(attributes), {.source = 0, .most = 1'000});
    EXPECT_EQ(contents.files.size(), 1'000U);
    ASSERT_TRUE(contents.trouble);
    EXPECT_EQ(contents.trouble->kind, ProblemKind::too_many_files);
}

}  // namespace
}  // namespace quill::codec
