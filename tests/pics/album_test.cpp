#include "pics/album.h"

#include "pics/album_builder.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>

namespace quill::pics {
namespace {

using report::Verdict;
using testing::ElementsAre;
using tests::AlbumBuilder;
using Picture = AlbumBuilder::Picture;

std::string bytes_of(const std::string& album, const Entry& entry) {
    return album.substr(entry.offset, entry.size);
}

Contents read(const std::string& album) {
    Result<Contents> contents = read_album(album);
    EXPECT_TRUE(contents.ok());
    return contents ? *std::move(contents) : Contents();
}

std::vector<std::string> problem_kinds(const Contents& contents) {
    std::vector<std::string> kinds;
    for (const report::Problem& problem : contents.problems) kinds.emplace_back(word_of(problem));
    return kinds;
}

/// Returns "name:verdict" of each picture; "*" if its bytes are not those of the picture of that name.
std::vector<std::string> summary(const std::string& album, const std::vector<Picture>& pictures) {
    std::vector<std::string> out;
    for (const Entry& entry : read(album).entries) {
        std::string line = entry.name + ":" + std::string(report::name_of(entry.verdict));
        const auto same = [&](const Picture& picture) {
            return picture.first == entry.name && picture.second == bytes_of(album, entry);
        };
        if (std::none_of(pictures.begin(), pictures.end(), same)) line += "*";
        out.push_back(line);
    }
    return out;
}

/// Four pictures of different sizes, each with a distinctive beginning.
const std::vector<Picture> four = {{"a.jpg", AlbumBuilder::jpeg(1000)},
                                   {"b.jpg", AlbumBuilder::jpeg(2000)},
                                   {"c.jpg", AlbumBuilder::jpeg(3000)},
                                   {"d.jpg", AlbumBuilder::jpeg(700)}};

TEST(Album, BothFormsAreReadInTheOrderOfTheirPictures) {
    const std::vector<Picture> pictures = {{"a.jpg", std::string(1000, 'A')}, {"b.gif", std::string(250, 'B')}};
    const std::string plain = AlbumBuilder::plain(pictures);
    const std::string thumbs = AlbumBuilder::with_thumbnails(pictures);
    ASSERT_EQ(plain.size(), 1883U);
    ASSERT_EQ(thumbs.size(), 31759U);
    for (const std::string& album : {plain, thumbs}) {
        EXPECT_THAT(summary(album, pictures), ElementsAre("a.jpg:whole", "b.gif:whole"));
        EXPECT_THAT(problem_kinds(read(album)), ElementsAre());
    }
    const Contents contents = read(thumbs);
    EXPECT_EQ(contents.entries[0].stored_name, "!R29!a.jpg.bmp");
    EXPECT_EQ(contents.entries[0].thumbnail_at, 333U);
    EXPECT_EQ(contents.entries[1].thumbnail_at, 15571U);
    EXPECT_EQ(contents.entries[0].offset, 30509U);
}

TEST(Album, APictureThatLooksLikeARecordIsAPicture) {
    const std::string record = AlbumBuilder::record("evil.jpg", "5");
    const std::string inner = AlbumBuilder::plain({{"inner.jpg", "12345"}});
    for (const std::string& bytes : {record, record + record, std::string("Happy") + std::string(400, '@'), inner}) {
        const std::vector<Picture> pictures = {{"a.dat", bytes}, {"b.dat", bytes}};
        EXPECT_THAT(summary(AlbumBuilder::plain(pictures), pictures), ElementsAre("a.dat:whole", "b.dat:whole"));
        EXPECT_THAT(summary(AlbumBuilder::with_thumbnails(pictures), pictures),
                    ElementsAre("a.dat:whole", "b.dat:whole"));
    }
}

TEST(Album, EmptyPicturesAndEmptyAlbumsAreWhole) {
    const std::vector<Picture> pictures = {{"a.jpg", ""}, {"b.jpg", "b"}, {"c.jpg", ""}};
    for (const std::string& album : {AlbumBuilder::plain(pictures), AlbumBuilder::with_thumbnails(pictures)}) {
        EXPECT_THAT(summary(album, pictures), ElementsAre("a.jpg:whole", "b.jpg:whole", "c.jpg:whole"));
    }
    for (const char* form : {"xyz", "abc"}) {
        const Contents empty = read("PICS_1.1.03." + std::string(form) + ":MULTI.IMAGE.PACK:");
        EXPECT_TRUE(empty.entries.empty() && empty.problems.empty()) << form;
    }
}

TEST(Album, WhatIsNoAlbumFails) {
    EXPECT_EQ(read_album("").error().code, ErrorCode::bad_input);
    EXPECT_EQ(read_album("PIC").error().code, ErrorCode::bad_input);
    EXPECT_EQ(read_album("PICS_").error().code, ErrorCode::unsupported);
    EXPECT_EQ(read_album("PICS_1.1.03.xyz:").error().code, ErrorCode::bad_input);
    EXPECT_EQ(read_album("PICS_1.1.03.klm:MULTI.IMAGE.PACK:").error().code, ErrorCode::unsupported);
    EXPECT_TRUE(read_album("PICS_9.9.99.xyz?????????????????\n").ok()) << "only the letters of the form count";
}

TEST(Album, NamesAreSafeAndDifferFromEachOther) {
    const std::string longest = std::string(251, 'n') + ".jpg";
    const std::vector<Picture> pictures = {{"a.jpg", "1"}, {"a.jpg", "2"},     {"a (2).jpg", "3"}, {"../../x.jpg", "4"},
                                           {"", "5"},      {"a^b@.jpg", "6"},  {"\xE9.jpg", "7"},  {longest, "8"},
                                           {"end@", "9"},  {"C:\\x.jpg", "0"}, {"\n", "n"}};
    for (const std::string& album : {AlbumBuilder::plain(pictures), AlbumBuilder::with_thumbnails(pictures)}) {
        std::vector<std::string> names;
        for (const Entry& entry : read(album).entries) names.push_back(entry.file_name);
        EXPECT_THAT(names, ElementsAre("a.jpg", "a (2).jpg", "a (2) (2).jpg", "x.jpg", "picture", "a^b@.jpg",
                                       "\xC3\xA9.jpg", longest, "end@", "x (2).jpg", "picture (2)"));
    }
}

TEST(Album, JunkAfterAPlainAlbumTakesNothingFromIt) {
    for (const std::string& junk : {std::string("\r\n"), std::string(1000, '\0'), std::string(299, '@')}) {
        const std::string album = AlbumBuilder::plain(four) + junk;
        EXPECT_THAT(summary(album, four), ElementsAre("a.jpg:whole", "b.jpg:whole", "c.jpg:whole", "d.jpg:whole"));
        EXPECT_THAT(problem_kinds(read(album)), ElementsAre("junk-behind"));
    }
}

struct Damage {
    const char* what;
    std::string album;
    std::vector<std::string> expected;
};

TEST(Album, DamagedAlbumsAreReadAsFarAsPicturesCanBeToldApart) {
    const std::string plain = AlbumBuilder::plain(four);
    const std::string thumbs = AlbumBuilder::with_thumbnails(four);
    const std::size_t pictures_at = thumbs.size() - 6700;
    const auto without = [](std::string album, std::size_t at, std::size_t n) { return album.erase(at, n); };
    const auto with = [](std::string album, std::size_t at, const std::string& more) { return album.insert(at, more); };
    const auto changed = [](std::string album, const std::string& from, const std::string& to) {
        return album.replace(album.find(from), from.size(), to);
    };
    const Damage cases[] = {
        {"bytes lost in b",
         without(plain, 33 + 1500, 100),
         {"a.jpg:whole", "b.jpg:incomplete*", "c.jpg:whole", "d.jpg:whole"}},
        {"bytes lost in b, with thumbnails",
         without(thumbs, pictures_at + 1500, 100),
         {"a.jpg:whole", "b.jpg:incomplete*", "c.jpg:whole", "d.jpg:whole"}},
        {"bytes too many in b",
         with(plain, 33 + 1500, "++++"),
         {"a.jpg:whole", "b.jpg:damaged*", "c.jpg:whole", "d.jpg:whole"}},
        {"a wrong size",
         changed(plain, "c.jpg^3000", "c.jpg^9000"),
         {"a.jpg:whole", "b.jpg:whole", "c.jpg:incomplete", "d.jpg:whole"}},
        {"an unreadable size",
         changed(plain, "c.jpg^3000", "c.jpg^3x00"),
         {"a.jpg:whole", "b.jpg:whole", "c.jpg:damaged", "d.jpg:whole"}},
        {"an unreadable record",
         changed(plain, "Happyb.jpg", "Hippyb.jpg"),
         {"a.jpg:whole", ":damaged*", "c.jpg:whole", "d.jpg:whole"}},
        {"an unreadable record, with thumbnails",
         changed(thumbs, "Happy!R29!b.jpg", "Hippy!R29!b.jpg"),
         {"a.jpg:whole", ":damaged*", "c.jpg:whole", "d.jpg:whole"}},
        {"cut in its directory", plain.substr(0, plain.size() - 450), {"c.jpg:whole", "d.jpg:whole"}},
        {"cut in c, with thumbnails",
         thumbs.substr(0, pictures_at + 4000),
         {"a.jpg:whole", "b.jpg:whole", "c.jpg:incomplete*", "d.jpg:incomplete*"}},
        {"cut in its units", thumbs.substr(0, 33 + 15238 + 400), {"a.jpg:incomplete*", "b.jpg:incomplete*"}},
        {"without a directory", plain.substr(0, 33 + 6000), {}},
    };
    for (const Damage& damage : cases) {
        SCOPED_TRACE(damage.what);
        EXPECT_EQ(summary(damage.album, four), damage.expected);
        EXPECT_FALSE(read(damage.album).problems.empty());
    }
}

TEST(Album, EveryCutOfAnAlbumIsNoticed) {
    const std::string plain = AlbumBuilder::plain(four);
    for (std::size_t size = 34; size < plain.size(); ++size) {
        EXPECT_FALSE(read(plain.substr(0, size)).problems.empty()) << size;
    }
    const std::string thumbs = AlbumBuilder::with_thumbnails(four);
    for (std::size_t size = 34; size < thumbs.size(); size += 101) {
        EXPECT_FALSE(read(thumbs.substr(0, size)).problems.empty()) << size;
    }
}

TEST(Album, MoreThan9999PicturesAreReadWithAWordForOlderPrograms) {
    std::vector<Picture> pictures;
    for (std::size_t i = 0; i < 10'000; ++i) pictures.emplace_back(std::to_string(i) + ".jpg", std::to_string(i));
    const std::string album = AlbumBuilder::plain(pictures);
    const Contents contents = read(album);
    ASSERT_EQ(contents.entries.size(), 10'000U);
    EXPECT_EQ(bytes_of(album, contents.entries[9'999]), "9999");
    EXPECT_THAT(problem_kinds(contents), ElementsAre("beyond-old-readers"));
}

TEST(Record, ItsTextIsReadFromTheRight) {
    struct Case {
        std::string text, name;
        std::optional<std::uint64_t> size;
    };
    const Case cases[] = {
        {"Happya^b.jpg^12", "a^b.jpg", 12},
        {"Happyname@^7", "name@", 7},
        {"Happya.jpg^0", "a.jpg", 0},
        {"Happya.jpg^", "a.jpg^", std::nullopt},
        {"Happya.jpg", "a.jpg", std::nullopt},
        {"Happy", "", std::nullopt},
        {"Happya^-1", "a", std::nullopt},
        {"Happya^18446744073709551616", "a", std::nullopt},
        {"Happya^5000000000", "a", 5'000'000'000},
    };
    for (const Case& each : cases) {
        std::string slot = each.text;
        slot.resize(record_size, record_padding);
        const auto record = parse_record(slot);
        ASSERT_TRUE(record) << each.text;
        EXPECT_EQ(record->stored_name, each.name) << each.text;
        EXPECT_EQ(record->size, each.size) << each.text;
    }
    EXPECT_FALSE(parse_record(std::string(record_size, '@')));
    EXPECT_FALSE(parse_record("Happya^1"));
}

TEST(Record, NamesAreStoredInWindows1252WhereTheyReadBackTheSame) {
    EXPECT_EQ(stored_text("\xC3\xA9t\xC3\xA9.jpg"), "\xE9t\xE9.jpg");
    EXPECT_EQ(stored_text("\xE2\x82\xAC.jpg"), "\x80.jpg");
    EXPECT_EQ(stored_text("\xD0\xB6.jpg"), "\xD0\xB6.jpg") << "not in that set";
    EXPECT_EQ(stored_text("\xC3\x83\xC2\xA9.jpg"), "\xC3\x83\xC2\xA9.jpg") << "its bytes would be read as UTF-8";
    EXPECT_EQ(stored_text("\xFF.jpg"), "\xFF.jpg") << "not UTF-8";
}

}  // namespace
}  // namespace quill::pics
