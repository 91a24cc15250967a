#include "archive/container/archive.h"

#include "archive/archive_builder.h"
#include "archive/container/member_reader.h"
#include "archive/extracting/extraction.h"
#include "archive/names/member_names.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using tests::ArchiveBuilder;
using tests::Odd;

std::vector<std::string> names(const Archive& archive) {
    std::vector<std::string> out;
    for (const Member& member : archive.members()) out.emplace_back(member.name);
    return out;
}

std::string content(const Archive& archive, std::size_t i, Verdict expected, std::string password = {}) {
    std::string out;
    MemberReader reader(archive, std::move(password));
    const Content result = reader.read(archive.members().at(i), [&](std::string_view bytes) {
        out += bytes;
        return true;
    });
    EXPECT_EQ(name_of(result.verdict), name_of(expected)) << archive.members()[i].name;
    return out;
}

std::string kinds(const std::vector<Problem>& problems) {
    std::string out;
    for (const Problem& problem : problems) out += (out.empty() ? "" : " ") + std::string(word_of(problem));
    return out;
}

ArchiveBuilder two_members() {
    return ArchiveBuilder().add("a.txt", "first").add("dir/b.txt", "second one");
}

TEST(Archive, FindsTheDirectoryWhateverStandsAround) {
    const std::string whole = two_members().finish("a comment");
    const struct {
        const char* what;
        std::string bytes;
        const char* problems;
    } cases[] = {
        {"as it is", whole, ""},
        {"junk before", "#!/bin/sh\n" + whole, "shifted"},
        {"junk behind", whole + std::string(300, 'x'), "junk-behind"},
        {"more junk behind than a comment can be", whole + std::string(100'000, 'x'), "junk-behind"},
        {"junk on both sides", "MZ" + whole + "trailer", "shifted junk-behind"},
        {"an end record in the comment", two_members().finish(std::string("PK\5\6") + std::string(18, '\0')), ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Result<Archive> archive = Archive::parse(c.bytes);
        ASSERT_TRUE(archive.ok());
        EXPECT_THAT(names(*archive), ElementsAre("a.txt", "dir/b.txt"));
        EXPECT_EQ(kinds(archive->problems()), c.problems);
        EXPECT_EQ(content(*archive, 1, Verdict::verified), "second one");
        EXPECT_TRUE(archive->is_sound());
    }
}

TEST(Archive, RecoversMembersOfADamagedFile) {
    const std::string members = two_members().members(), whole = two_members().finish();
    const std::string silent = ArchiveBuilder()
                                   .add("a.txt", "first", {.silent_local = true})
                                   .add("dir/b.txt", "second one", {.silent_local = true})
                                   .members();
    std::string broken_entry = whole;
    broken_entry[members.size() + 1] = 'X';  // the signature of the first directory entry
    const struct {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"no directory at all", members},
        {"a directory without its end", members + two_members().directory().substr(0, 60)},
        {"sizes in descriptors alone", silent},
        {"junk between", "junk" + members + "PK more junk"},
        {"an unreadable entry", broken_entry},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Result<Archive> archive = Archive::parse(c.bytes);
        ASSERT_TRUE(archive.ok());
        EXPECT_THAT(names(*archive), ::testing::UnorderedElementsAre("a.txt", "dir/b.txt"));
        EXPECT_FALSE(archive->problems().empty());
        EXPECT_FALSE(archive->is_sound());
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_EQ(content(*archive, i, Verdict::verified),
                      archive->members()[i].name == "a.txt" ? "first" : "second one");
        }
    }
}

TEST(Archive, ReportsThatThereAreMoreMembersThanAFileOfItsSizeHas) {
    const std::string header = ArchiveBuilder().add("a", "").members();
    std::string bytes;
    for (int i = 0; i < 100'001; ++i) bytes += header;
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    EXPECT_EQ(archive->members().size(), 100'000U);
    EXPECT_EQ(kinds(archive->problems()), "no-directory too-many");
    EXPECT_FALSE(archive->is_sound());
}

TEST(Archive, ACutFileGivesItsLastMemberAsFarAsItGoes) {
    const std::string members = two_members().members();
    const Result<Archive> archive = Archive::parse(std::string_view(members).substr(0, members.size() - 4));
    ASSERT_TRUE(archive.ok());
    EXPECT_EQ(content(*archive, 0, Verdict::verified), "first");
    EXPECT_EQ(content(*archive, 1, Verdict::damaged), "second");
}

TEST(Archive, AStoredMemberCutBeforeItsSizeIsToldIsDamaged) {
    const std::string members = ArchiveBuilder().add("a.txt", "some content", {.silent_local = true}).members();
    constexpr std::size_t descriptor_and_more = 16 + 4;
    const Result<Archive> archive =
        Archive::parse(std::string_view(members).substr(0, members.size() - descriptor_and_more));
    ASSERT_TRUE(archive.ok());
    EXPECT_EQ(content(*archive, 0, Verdict::damaged), "some con");
}

TEST(Archive, AnArchiveInsideAMemberIsNotTakenForTheCutOneAroundIt) {
    const std::string inner = ArchiveBuilder().add("inner.txt", "in").finish();
    const std::string outer = ArchiveBuilder().add("inner.zip", inner).add("b.txt", "out").members();
    const Result<Archive> archive = Archive::parse(outer);
    ASSERT_TRUE(archive.ok());
    EXPECT_THAT(names(*archive), ElementsAre("inner.zip", "b.txt"));
}

TEST(Archive, WhatIsNoArchiveIsRefused) {
    for (const std::string_view bytes :
         {std::string_view(), std::string_view("PK"), std::string_view("PK\3\4 but no more"),
          std::string_view("just a text that is long enough to hold an end record")}) {
        const Result<Archive> archive = Archive::parse(bytes);
        ASSERT_FALSE(archive.ok());
        EXPECT_EQ(archive.error().code, ErrorCode::bad_input);
    }
    EXPECT_TRUE(Archive::parse(ArchiveBuilder().finish()).ok());  // an empty archive is valid
}

TEST(Archive, CountsBeyondSixteenBitsComeFromTheZip64Record) {
    ArchiveBuilder builder;
    for (int i = 0; i < 70'000; ++i) builder.add(std::to_string(i), "");
    const std::string bytes = builder.finish();
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    EXPECT_EQ(archive->members().size(), 70'000U);
    EXPECT_TRUE(archive->problems().empty());
}

TEST(Archive, Zip64SizesStandInTheExtraField) {
    std::string extra;
    put16(extra, extra_zip64);
    put16(extra, 16);
    put64(extra, 5);  // uncompressed
    put64(extra, 5);  // compressed
    const std::string bytes =
        ArchiveBuilder()
            .add("a", "hello", {.stated_size = 0xFFFFFFFF, .stated_packed_size = 0xFFFFFFFF, .extra = extra})
            .finish();
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    EXPECT_EQ(content(*archive, 0, Verdict::verified), "hello");
}

TEST(Archive, NamesAreUnicodeWhereverTheyComeFrom) {
    const std::string utf8 =
        "Gr\xC3\xBC\xC3\x9F"
        "e.txt";
    std::string path_field;
    put16(path_field, extra_unicode_path);
    put16(path_field, 5 + utf8.size());
    path_field += '\1';
    put32(path_field, quill::crc32(0, "Gr__e.txt"));
    path_field += utf8;
    const struct {
        const char* what;
        std::string stored;
        Odd odd;
        std::string expected;
    } cases[] = {
        {"flag", utf8, {.flags = utf8_flag}, utf8},
        {"path field", "Gr__e.txt", {.extra = path_field}, utf8},
        {"path field of another name", "Other.txt", {.extra = path_field}, "Other.txt"},
        {"UTF-8 without a flag", utf8, {}, utf8},
        {"CP437",
         "Gr\x81\xE1"
         "e.txt",
         {},
         utf8},
        {"CP1252",
         "Gr\xFC\xDF"
         "e.txt",
         {},
         utf8},
        {"CP866", "\x8F\xE0\xA8\xA2\xA5\xE2.txt", {}, "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82.txt"},
        {"CP932", "\x93\xFA\x96\x7B\x8C\xEA.txt", {}, "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E.txt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const std::string bytes = ArchiveBuilder().add(c.stored, "x", c.odd).finish();
        const Result<Archive> archive = Archive::parse(bytes);
        ASSERT_TRUE(archive.ok());
        EXPECT_EQ(archive->members()[0].name, c.expected);
    }
}

TEST(Archive, NamesCanBeReadInAnotherCharacterSet) {
    const std::string flagged =
        "Gr\xC3\xBC\xC3\x9F"
        "e";
    const struct {
        const char* set;
        const char* stored;
        const char* shown;
    } cases[] = {
        {"CP437", "\x9B\x81", "\xC2\xA2\xC3\xBC"},
        {"cp850", "\x9B\x81", "\xC3\xB8\xC3\xBC"},
        {"CP866", "\x8F\xA0", "\xD0\x9F\xD0\xB0"},
        {"Shift-JIS", "\x95\x5C/\x93\xFA", "\xE8\xA1\xA8/\xE6\x97\xA5"},  // a backslash inside a character
        {"GBK", "\xD6\xD0\xCE\xC4", "\xE4\xB8\xAD\xE6\x96\x87"},
        {"windows-1252", "\xD6\xD0", "\xC3\x96\xC3\x90"},
        {"utf-8", "\xC3\xBC", "\xC3\xBC"},
        {"UTF-8", "\xD6\xD0", "\xC3\x96\xC3\x90"},  // not UTF-8
        {"Shift-JIS", "\x93", "\xE2\x80\x9C"},      // half a character
        {"CP866", "plain", "plain"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.set) + " " + c.shown);
        const std::string bytes = ArchiveBuilder().add(flagged, "", {.flags = utf8_flag}).add(c.stored, "x").finish();
        Result<Archive> archive = Archive::parse(bytes);
        ASSERT_TRUE(archive.ok() && character_set(c.set));
        const std::string detected(archive->members()[1].name);
        archive->read_names_in(character_set(c.set)->code_page);
        EXPECT_EQ(archive->members()[0].name, flagged);
        EXPECT_EQ(archive->members()[1].name, c.shown);
        archive->read_names_in({});
        EXPECT_EQ(archive->members()[1].name, detected);
    }
    EXPECT_FALSE(character_set("CP932"));  // not its name here
    EXPECT_FALSE(character_set(""));
}

TEST(Archive, OnlyMembersThatShareBytesAreMarked) {
    const std::string bytes = ArchiveBuilder()
                                  .add("a", "first")
                                  .add("b", "second", {.offset = 3})
                                  .add("c", "third")
                                  .add("d", "beyond the end", {.offset = 5000})
                                  .finish();
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    std::vector<bool> marked;
    for (const Member& member : archive->members()) marked.push_back(member.overlaps);
    EXPECT_THAT(marked, ElementsAre(false, true, false, true));
    EXPECT_FALSE(archive->is_sound());
}

TEST(MemberNames, LettersDecideBetweenTheDosPages) {
    // Each name is in its stated page; the other one reads it as letters too.
    const struct {
        const char* page;
        std::vector<std::string_view> names;
    } cases[] = {
        {"CP866", {"\x80\x34.txt"}},                           // A4
        {"CP866", {"\x8F\x90\x88\x82\x85\x92.TXT"}},           // PRIVET
        {"CP866", {"Doc \xAE\xE2 5.txt"}},                     // Doc ot 5
        {"CP866", {"1\x91.doc", "\x8E\xE2\xE7\xA5\xE2.doc"}},  // 1S, Otchet
        {"CP866", {"\xEF.jpg", "\xE2\xEB.jpg"}},               // ya, ty
        {"CP866", {"\xA4\xA0.txt"}},                           // da
        {"CP437", {"M\x81ller.txt"}},                          // Mueller
        {"CP437", {"\x85 la carte.doc"}},                      // a la carte
        {"CP437",
         {"\x8Erger.txt",
          "\x9A"
          "ber.txt"}},  // Aerger, Ueber
        {"CP437",
         {"cr\x8Am\x82 br\x96l\x82"
          "e.txt"}},  // creme brulee
        {"CP437",
         {"Espa\xA4"
          "a.txt",
          "ma\xA4"
          "ana.txt"}},
        {"CP437", {"\x90t\x82.jpg"}},  // Ete
    };
    for (const auto& c : cases) EXPECT_EQ(detect_code_page(c.names), c.page) << c.names.front();
}

TEST(MemberReader, TakesTheNumbersThatTheDataAgreeWith) {
    const std::string deflated("\xCB\x48\xCD\xC9\xC9\x07\x00", 7);  // "hello"
    const std::string stored = "hello";
    const struct {
        const char* what;
        Odd odd;
        Verdict verdict;
        const char* bytes;
    } cases[] = {
        {"a size in the directory that leads into it",
         {.stated_packed_size = 5000, .local_packed_size = 5},
         Verdict::verified,
         "hello"},
        {"a size in the directory that is too small",
         {.stated_size = 2, .stated_packed_size = 2, .local_size = 5, .local_packed_size = 5},
         Verdict::verified,
         "hello"},
        {"a wrong size of deflated content",
         {.method = 8, .packed = deflated, .stated_size = 4, .local_size = 5},
         Verdict::verified,
         "hello"},
        {"a wrong local header", {.local_size = 7, .local_packed_size = 2}, Verdict::verified, "hello"},
        {"a local header that leads into the next member",
         {.stated_size = 2, .stated_packed_size = 2, .local_size = 40, .local_packed_size = 40},
         Verdict::damaged,
         "he"},
        {"neither", {.stated_size = 4, .local_size = 3}, Verdict::damaged, nullptr},
        {"deflated data that end before it",
         {.method = 8, .packed = deflated, .stated_packed_size = 5000},
         Verdict::verified,
         "hello"},
        {"a descriptor behind the data of a member that runs into the directory",
         {.method = 8, .packed = deflated, .stated_packed_size = 5000, .silent_local = true},
         Verdict::verified,
         "hello"},
    };
    for (const auto& c : cases) {
        for (const bool is_last : {true, false}) {
            SCOPED_TRACE(std::string(c.what) + (is_last ? ", last" : ", before another"));
            ArchiveBuilder builder;
            builder.add("a", stored, c.odd);
            if (!is_last) builder.add("b", "another");
            const std::string bytes = builder.finish();
            const Result<Archive> archive = Archive::parse(bytes);
            ASSERT_TRUE(archive.ok());
            EXPECT_FALSE(archive->members()[0].overlaps);
            const std::string out = content(*archive, 0, c.verdict);
            if (c.bytes != nullptr) {
                EXPECT_EQ(out, c.bytes);
            }
        }
    }
}

TEST(Extraction, LimitsHoldWhereSizesAreNotStatedTooAndCanBeLifted) {
    const std::string unknown = ArchiveBuilder().add("c", std::string(600, 'c'), {.silent_local = true}).members();
    const std::string bytes = ArchiveBuilder().add("a", std::string(600, 'a')).members() +
                              unknown.substr(0, unknown.size() - 16);  // without its descriptor
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    ASSERT_EQ(archive->members().size(), 2U);
    const auto outcome = [&](const Limits& limits) {
        ExtractOptions options;
        options.threads = 1;
        options.limits = limits;
        std::string out;
        const Status done = test_members(*archive, {0, 1}, options, [&](const MemberResult& result) {
            out += std::string(name_of(result.verdict)) + " " + kinds(result.problems) + ".";
        });
        return done ? out : std::string("not begun");
    };
    EXPECT_EQ(outcome({}), "verified .damaged cut.");
    EXPECT_EQ(outcome({.most_bytes = 1100}), "verified .refused limit.");
    EXPECT_EQ(outcome({.most_bytes = 500}), "not begun");
    EXPECT_EQ(outcome({.most_members = 1}), "verified .refused limit.");
    EXPECT_EQ(outcome({.most_ratio = 0, .free_bytes = 700}), "verified .refused limit.");
    EXPECT_EQ(outcome(Limits::lifted()), "verified .damaged cut.");
}

}  // namespace
}  // namespace quill::zip
