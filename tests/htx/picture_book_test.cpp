#include "htx/picture_book/picture_book.h"

#include "htx/html/references.h"
#include "htx/picture_book/exif_description.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::htx {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Returns the page of a picture, from its title, line 7, the picture's name and line 12.
std::string page_of(const std::string& title, const std::string& above, const std::string& name,
                    const std::string& below) {
    return "<html><head><title>\r\n" + title + "\r\n</title></head>\r\n<body>&nbsp;<br>&nbsp;\r\n" +
           "<center><table COLS=1 WIDTH=\"80%\" >\r\n<tr><td><center>\r\n" + above +
           "</center><BR><p></td></tr>\r\n<tr><td><center><img SRC=\r\n\"" + name +
           "\"\r\nBORDER=0></center></td></tr>\r\n<tr><td><p><BR><p><center>\r\n" + below +
           "</center></td></tr></table></center>\r\n<br>&nbsp;<br>&nbsp;</body></html>\r\n";
}

TEST(PictureBook, IsPicturesPagesAndTheWindow) {
    PictureBook book;
    book.pictures = {{"/pictures/a.jpg", "First", "Seen from above", true}, {"/pictures/b.gif", "Second", "", false}};
    book.order = {0, 1};
    book.geometry = {15360, 10920, 0, 0};
    std::vector<std::string> names, texts;
    for (const zip::NewMember& member : files_of_book(book)) {
        names.push_back(member.name);
        if (member.text) texts.push_back(*member.text);
    }
    EXPECT_THAT(names, ElementsAre("a.jpg", "b.gif", "0001.htm", "0002.htm", "index.r29"));
    EXPECT_THAT(texts, ElementsAre(page_of("First", "Seen from above", "a.jpg", ""), page_of("Second", "", "b.gif", ""),
                                   "15360\r\n10920\r\n0\r\n0\r\n"));
}

TEST(PictureBook, PagesFollowTheOrderAndPicturesKeepTheirNames) {
    PictureBook book;
    book.pictures = {{"a.jpg", "A", "of a", true}, {"b.gif", "B", "of b", true}};
    book.order = {1, 0};
    const std::vector<zip::NewMember> members = files_of_book(book);
    EXPECT_EQ(members[2].text, page_of("B", "of b", "b.gif", ""));
    EXPECT_EQ(members[3].text, page_of("A", "of a", "a.jpg", ""));
}

TEST(PictureBook, KeepsEqualNamesApart) {
    PictureBook book;
    for (const char* file : {"one/a.jpg", "two/A.JPG", "three/0001.htm", "INDEX.R29"})
        book.pictures.push_back({file, "T"});
    book.order = {0, 1};
    book.has_index = true;
    std::vector<std::string> names;
    for (const zip::NewMember& member : files_of_book(book)) names.push_back(member.name);
    EXPECT_THAT(names, ElementsAre("a.jpg", "A (2).JPG", "0001 (2).htm", "INDEX (2).R29", "0000.htm", "0001.htm",
                                   "0002.htm", "index.r29"));
}

TEST(PictureBook, ProposesTitlesFromNames) {
    EXPECT_EQ(proposed_title("/p/My_summer.day.jpg"), "My summer.day");
    EXPECT_EQ(proposed_title(".jpg"), ".jpg");
    EXPECT_EQ(proposed_title("_.jpg"), "_.jpg");
}

/// Returns a JPEG file with EXIF data whose first directory has a description.
std::string described(const std::string& text, bool big, std::size_t count_beyond = 0) {
    const auto number = [&](std::size_t value, std::size_t size) {
        std::string out(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            out[big ? size - 1 - i : i] = static_cast<char>(value >> (8 * i) & 0xFFU);
        return out;
    };
    std::string tiff = (big ? "MM" : "II") + number(42, 2) + number(8, 4);                 // the directory is at 8
    tiff += number(2, 2) + number(256, 2) + number(4, 2) + number(1, 4) + number(640, 4);  // ImageWidth
    const std::size_t after = 8 + 2 + 2 * 12;
    tiff += number(270, 2) + number(2, 2) + number(text.size() + count_beyond, 4);  // ImageDescription
    tiff += text.size() <= 4 ? text + std::string(4 - text.size(), '\0') : number(after, 4) + text;
    const std::string segment = std::string("Exif\0\0", 6) + tiff;
    const std::size_t length = segment.size() + 2;
    std::string jpeg("\xFF\xD8\xFF\xE0\0\4ab\xFF\xE1", 10);  // an APP0 segment before it
    jpeg.append(1, static_cast<char>(length >> 8U)).append(1, static_cast<char>(length & 0xFFU));
    return jpeg + segment;
}

TEST(ExifDescription, IsReadInBothByteOrders) {
    const struct {
        std::string text, read;
    } cases[] = {
        {std::string("The harbour\0", 12), "The harbour"},
        {"Sea", "Sea"},
        {"  two\r\nlines  ", "two  lines"},
        {"caf\xE9 au lait", "caf\xC3\xA9 au lait"},
        {"ACME DIGITAL CAMERA", ""},
        {"      ", ""},
    };
    for (const auto& c : cases) {
        for (const bool big : {false, true}) EXPECT_EQ(exif_description(described(c.text, big)), c.read) << c.text;
    }
}

TEST(ExifDescription, IsNotReadBeyondItsData) {
    const std::string whole = described("A long description", false);
    EXPECT_EQ(exif_description(described("A long description", false, 4'000'000)), "A long description");
    for (std::size_t size = 0; size + 1 < whole.size(); ++size) EXPECT_EQ(exif_description(whole.substr(0, size)), "");
}

TEST(PicturePage, HasTheLettersAndColoursOfItsBook) {
    const struct {
        PageStyle style;
        std::string block;
    } cases[] = {
        {{.size = 8}, "<font size=-2>c</font>"},
        {{.size = 10}, "<font size=-1>c</font>"},
        {{.size = 12, .bold = true}, "<B>c</B>"},
        {{.size = 14, .italic = true}, "<font size=+1><i>c</i></font>"},
        {{.size = 18}, "<font size=+2>c</font>"},
        {{.size = 24}, "<font size=+3>c</font>"},
        {{.size = 36, .bold = true, .italic = true}, "<font size=+4><B><i>c</i></B></font>"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(picture_page({"T", "c", true, "a.jpg"}, c.style), page_of("T", c.block, "a.jpg", ""));
        EXPECT_EQ(picture_page({"T", "c", false, "a.jpg"}, c.style), page_of("T", "", "a.jpg", c.block));
    }
    const PageStyle colours{.has_colours = true, .foreground = {0, 10, 255}, .background = {255, 255, 224}};
    EXPECT_THAT(picture_page({"T", "", true, "a.jpg"}, colours),
                HasSubstr("\r\n<body text=\"#000AFF\" bgcolor=\"#FFFFE0\">&nbsp;<br>&nbsp;\r\n"));
}

TEST(PicturePage, TakesWordsThatWouldBreakIt) {
    const struct {
        std::string title, written;
    } cases[] = {
        {"a < b & c", "a &lt; b &amp; c"},      {"R&D", "R&amp;D"},
        {"Tom &amp; Jerry", "Tom &amp; Jerry"}, {"<i>sloop</i>", "<i>sloop</i>"},
        {"<i> & more", "&lt;i> &amp; more"},    {"</title><b>x</b>", "&lt;/title>&lt;b>x&lt;/b>"},
        {"two\r\nlines", "two  lines"},         {"caf\xC3\xA9", "caf&#233;"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(picture_page({c.title, "", true, "a.jpg"}, {}), page_of(c.written, "", "a.jpg", "")) << c.title;
    }
    EXPECT_EQ(picture_page({"T", "one\r\ntwo\r\n", true, "a.jpg"}, {}), page_of("T", "onetwo", "a.jpg", ""));
    EXPECT_EQ(picture_page({"T", "<b>x</b> & y", true, "a.jpg"}, {}), page_of("T", "<b>x</b> & y", "a.jpg", ""));
    EXPECT_EQ(picture_page({"T", "", true, "my photo.jpg"}, {}), page_of("T", "", "my photo.jpg", ""));
    const std::string page = picture_page({"T", "", true, "a\"#1%\xC3\xA9.jpg"}, {});
    EXPECT_EQ(references_of_page(page).references[0].address, "a%22%231%25%C3%A9.jpg");
}

TEST(PageName, HasFourDigits) {
    EXPECT_EQ(page_name(1), "0001.htm");
    EXPECT_EQ(page_name(123), "0123.htm");
    EXPECT_EQ(page_name(9999), "9999.htm");
}

}  // namespace
}  // namespace quill::htx
