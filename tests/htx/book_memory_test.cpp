#include "htx/book/book_memory.h"

#include "htx/book/book_geometry.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace quill::htx {
namespace {

class BookMemory : public testing::Test {
  protected:
    tests::TemporaryDirectory directory;
    std::string file = directory.path("state/program/books");
};

TEST_F(BookMemory, KeepsTheBooksLeftLast) {
    EXPECT_EQ(remembered_place(file, "/b/0.htx"), std::nullopt);
    const std::size_t books = most_books_remembered + 3;
    for (std::size_t i = 0; i < books; ++i) {
        ASSERT_TRUE(remember_place(file, "/b/" + std::to_string(i) + ".htx", {i, 4'000'000'000, 250}));
    }
    ASSERT_TRUE(remember_place(file, "/b/3.htx", {9, 8, 70}));
    EXPECT_EQ(remembered_place(file, "/b/2.htx"), std::nullopt);
    EXPECT_EQ(remembered_place(file, "/b/3.htx"), (BookPlace{9, 8, 70}));
    EXPECT_EQ(remembered_place(file, "/b/502.htx"), (BookPlace{502, 4'000'000'000, 250}));
    const std::string text = directory.read("state/program/books");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), static_cast<std::ptrdiff_t>(most_books_remembered));
    EXPECT_EQ(text.find("htx"), std::string::npos);
}

TEST_F(BookMemory, DoesNotTrustItsFile) {
    remember_place(file, "/b/a.htx", {1, 2, 100});
    const std::string key = directory.read("state/program/books").substr(0, 32);
    const struct {
        std::string text;
        std::optional<BookPlace> place;
    } cases[] = {
        {key + " 1 2 100\n", BookPlace{1, 2, 100}},
        {key + " 1 2 100", BookPlace{1, 2, 100}},
        {key + " 1 2 999999\n", BookPlace{1, 2, most_zoom}},
        {key + " 1 2 0\n", BookPlace{1, 2, least_zoom}},
        {key + " 1 2\n", std::nullopt},
        {key + " 1 2 3 4\n", std::nullopt},
        {key + " -1 2 100\n", std::nullopt},
        {key + " 1 99999999999 100\n", std::nullopt},
        {"\n\nnonsense\n" + key + " 5 6 120\n", BookPlace{5, 6, 120}},
        {std::string(1 << 20, 'x') + "\n" + key + " 1 2 100\n", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        directory.write("state/program/books", c.text);
        EXPECT_EQ(remembered_place(file, "/b/a.htx"), c.place) << c.text.substr(0, 80);
    }
}

TEST_F(BookMemory, WritesNothingWhereItHasNoPlace) {
    EXPECT_FALSE(remember_place("", "/b/a.htx", {}));
    directory.write("taken", "a file");
    EXPECT_FALSE(remember_place(directory.path("taken/books"), "/b/a.htx", {}));
    EXPECT_EQ(directory.read("taken"), "a file");
}

TEST(BookGeometryOnScreens, GoesToTheScreenThatShowsMostOfIt) {
    const std::vector<ScreenArea> screens = {{0, 0, 15000, 10000}, {15000, -2000, 20000, 15000}};
    const struct {
        BookGeometry wanted, shown;
    } cases[] = {
        {{9000, 6000, 300, 500}, {9000, 6000, 300, 500}},
        {{9000, 6000, 0, 20000}, {9000, 6000, 0, 20000}},          // on the second one
        {{9000, 6000, -1000, 14000}, {9000, 6000, -1000, 15000}},  // mostly on it
        {{9000, 6000, 0, 8000}, {9000, 6000, 0, 6000}},            // mostly on the first one
        {{9000, 6000, 0, 90000}, {9000, 6000, 0, 6000}},           // on a screen that is gone
        {{50000, 50000, 0, 0}, {20000, 15000, -2000, 15000}},
    };
    for (const auto& c : cases) EXPECT_EQ(fit_to_screens(c.wanted, screens), c.shown) << c.wanted.left;
    EXPECT_EQ(fit_to_screens(cases[0].wanted, {}), cases[0].wanted);
}

}  // namespace
}  // namespace quill::htx
