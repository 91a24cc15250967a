#include "integration/favorites.h"

#include "files/directory.h"
#include "support/temporary_directory.h"

#include <gmock/gmock.h>

namespace quill::integration {
namespace {

using ::testing::ElementsAre;

TEST(Favorites, ALineIsDirectorySeparatorMarkCaption) {
    const std::string_view profile = "/home/ann";
    struct Case {
        std::string_view contents;
        std::optional<Favorite> favorite;
    };
    const Case cases[] = {
        {"/srv/mail/^Mail\r\n", Favorite{"Mail", "/srv/mail"}},
        {"//^Root\r\n", Favorite{"Root", "/"}},
        {"/^Root too", Favorite{"Root too", "/"}},
        {"!\\my documents\\^Papers\r\n", Favorite{"Papers", "/home/ann/my documents"}},
        {"!/^Home\n", Favorite{"Home", "/home/ann"}},
        {"/a/^b^c\r\n", Favorite{"b^c", "/a"}},
        {"/srv/mail^No separator\r\n", std::nullopt},
        {"/srv/mail/\r\n", std::nullopt},
        {"/with, comma/^Cut\r\n", std::nullopt},
        {"^", std::nullopt},
        {"", std::nullopt},
    };
    for (const Case& c : cases) EXPECT_EQ(parse_favorite(c.contents, profile), c.favorite) << c.contents;
}

TEST(Favorites, WhatIsWrittenReadsBackAndMissingDirectoriesDropOut) {
    const tests::TemporaryDirectory temporary;
    const std::string& dir = temporary.path();
    const std::string before = files::current_directory();
    EXPECT_TRUE(write_favorite(dir, {"Root", "/"}));
    EXPECT_TRUE(write_favorite(dir, {"Gone", dir + "/gone"}));
    EXPECT_TRUE(write_favorite(dir, {"here", dir + "/gone"}));
    EXPECT_TRUE(write_favorite(dir, {"here", dir}));
    EXPECT_FALSE(write_favorite(dir, {"a/b", dir}));
    const std::string comma = temporary.make_directory("mail, old");
    EXPECT_TRUE(write_favorite(dir, {"comma", comma}));
    EXPECT_FALSE(write_favorite(dir, {"", dir}));
    temporary.write("broken.hyp", "nothing of the kind");
    EXPECT_THAT(read_favorites(dir, "/home/ann"),
                ElementsAre(Favorite{"comma", comma}, Favorite{"here", dir}, Favorite{"Root", "/"}));
    EXPECT_TRUE(read_favorites(dir + "/gone", "/home/ann").empty());
    EXPECT_EQ(files::current_directory(), before);
}

TEST(Favorites, AnEmptyDirectoryGetsTheUsualOnesOnce) {
    const tests::TemporaryDirectory temporary;
    const std::string favorites = temporary.make_directory("favorites");
    temporary.make_directory("Mail");
    make_first_favorites(favorites);
    const Favorite mail{"Mail", temporary.path("Mail")};
    const Favorite home{"Home", temporary.path()};
    EXPECT_THAT(read_favorites(favorites, temporary.path()), ElementsAre(home, mail));
    temporary.write("favorites/Home.hyp", "no favorite");
    make_first_favorites(favorites);
    EXPECT_THAT(read_favorites(favorites, temporary.path()), ElementsAre(mail));
}

}  // namespace
}  // namespace quill::integration
