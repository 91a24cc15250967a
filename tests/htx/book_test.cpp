#include "archive/archive_builder.h"
#include "htx/book/book_check.h"
#include "htx/book/book_geometry.h"
#include "htx/book/book_pages.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::htx {
namespace {

using testing::ElementsAre;

TEST(BookGeometry, IsFourLinesOfPlainNumbers) {
    EXPECT_EQ(format_geometry({15360, 10920, 0, 0}), "15360\r\n10920\r\n0\r\n0\r\n");
    EXPECT_EQ(format_geometry({7.5F, 1e9F, -15, 0}), "7.5\r\n1000000000\r\n-15\r\n0\r\n");
}

TEST(BookGeometry, ReadsWhatOthersHaveWritten) {
    const struct {
        std::string_view text;
        BookGeometry geometry;
    } cases[] = {
        {"15360\r\n10920\r\n30\r\n45\r\n", {15360, 10920, 30, 45}},
        {"15360\r\n10920\r\n30\r\n45", {15360, 10920, 30, 45}},
        {"15360\n10920\n30\n45\n", {15360, 10920, 30, 45}},
        {" 100.5, 200 ,\"3\",-4", {100.5F, 200, 3, -4}},
        {"100\r\n", {100, 0, 0, 0}},
        {"", {}},
        {"wide\r\n1e99\r\nnan\r\ninf\r\n", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(parse_geometry(c.text), c.geometry) << c.text;
}

TEST(BookGeometry, KeepsTheWindowOnTheScreen) {
    const ScreenArea screen{0, 0, 15360, 11520};
    const struct {
        BookGeometry wanted, shown;
    } cases[] = {
        {{9000, 6000, 100, 200}, {9000, 6000, 100, 200}}, {{30000, 6000, 0, 500}, {15360, 6000, 0, 0}},
        {{9000, 6000, 0, 9000}, {9000, 6000, 0, 6360}},   {{9000, 30000, 700, 0}, {9000, 11520, 0, 0}},
        {{9000, 6000, -300, -9000}, {9000, 6000, 0, 0}},  {{40000, 6000, 0, -20000}, {15360, 6000, 0, 0}},
    };
    for (const auto& c : cases) EXPECT_EQ(fit_to_screen(c.wanted, screen), c.shown);
    EXPECT_EQ(fit_to_screen({9000, 6000, 0, 0}, {15360, 0, 15360, 11520}).left, 15360);
}

TEST(BookPages, ComeInTheOrderOfTheirNames) {
    std::vector<std::string> paths = {"/w/c.htm", "/w/B.HTML", "/w/a.htm", "/w/0002.htm", "/w/0001.htm"};
    sort_as_pages(paths);
    EXPECT_THAT(paths, ElementsAre("/w/0001.htm", "/w/0002.htm", "/w/a.htm", "/w/B.HTML", "/w/c.htm"));
}

TEST(ContentsTitle, IsTakenFromTheFirstElevenLines) {
    const std::string ten(20, '\n');
    const struct {
        std::string page, title;
    } cases[] = {
        {"<html><head><title>\r\nFirst\r\n</title>", "First"},
        {"<TITLE>A title</TITLE>", "A title"},
        {"<title>cut\r\noff</title>", "cut"},
        {"<title>\r\na < b\r\n", "a < b"},
        {"<title>one</title>\r\n<title>two</title>", "two"},
        {"<title>a &lt; b</title>", "a < b"},
        {"\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n<title>eleventh</title>", "eleventh"},
        {"\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n<title>twelfth</title>", ""},
        {"<title>", ""},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(contents_title(c.page), c.title) << c.page;
}

TEST(BookFiles, AreFoundByTheAddressesInPages) {
    const BookFiles files({"a.htm", "Img/B.GIF", "", "100%25.htm", "\xC3\xA9.htm"});
    const struct {
        std::string_view address;
        int number;  // -1: not found
    } cases[] = {{"a.htm", 0},      {"A.HTM#x", 0},  {"img/b.gif", 1}, {"", 0},          {"100%25.htm", 3},
                 {"%C3%A9.htm", 4}, {"\xE9.htm", 4}, {"gone.htm", -1}, {"../a.htm", -1}, {"http://a.htm", -1}};
    for (const auto& c : cases) {
        const auto found = files.find(resolve("a.htm", c.address));
        EXPECT_EQ(found ? static_cast<int>(*found) : -1, c.number) << c.address;
    }
}

TEST(BookCheck, NamesEachLinkThatLeadsNowhere) {
    const std::string bytes =
        tests::ArchiveBuilder()
            .add("a.htm", "<a href=b/c.htm>\n<a href=gone.htm>\r\n<img\nsrc='b/gone.gif'><a href=http://x/y.htm>")
            .add("b/", "")
            .add("b/c.htm", "<a href=../a.htm><a href=../../a.htm>")
            .add("s.css", "p{background:url(none.png)}")
            .add("x.png", "<a href=not-a-page.htm>")
            .finish();
    const Result<zip::Archive> archive = zip::Archive::parse(bytes);
    ASSERT_TRUE(archive);
    const BookCheck check = check_book(*archive, {});
    std::vector<std::string> broken;
    for (const BrokenLink& link : check.broken) {
        broken.push_back(link.page + ":" + std::to_string(link.line) + ":" + link.address + (link.climbs ? "!" : ""));
    }
    EXPECT_THAT(broken,
                ElementsAre("a.htm:2:gone.htm", "a.htm:3:b/gone.gif", "b/c.htm:1:../../a.htm!", "s.css:1:none.png"));
    EXPECT_EQ(check.pages, 3U);
    EXPECT_EQ(check.links, 6U);
    EXPECT_TRUE(check.doubtful.empty());
}

TEST(BookCheck, ReportsPagesThatCantBeReadWhole) {
    const std::string bytes = tests::ArchiveBuilder().add("a.htm", "<a href=a.htm>", {.crc = 1}).finish();
    const Result<zip::Archive> archive = zip::Archive::parse(bytes);
    ASSERT_TRUE(archive);
    const BookCheck check = check_book(*archive, {});
    ASSERT_EQ(check.doubtful.size(), 1U);
    EXPECT_EQ(check.doubtful[0].content.verdict, report::Verdict::damaged);
    EXPECT_TRUE(check.broken.empty());
}

}  // namespace
}  // namespace quill::htx
