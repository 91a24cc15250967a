#include "htx/html/address.h"
#include "htx/html/html_reader.h"
#include "htx/html/page_text.h"
#include "htx/html/references.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::htx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> addresses(const std::vector<Reference>& references) {
    std::vector<std::string> out;
    for (const Reference& reference : references) out.push_back(reference.address);
    return out;
}

std::vector<std::string> in_page(std::string_view page) {
    return addresses(references_of_page(page).references);
}

TEST(PageReferences, AreFoundHoweverAnAttributeIsWritten) {
    const struct {
        std::string_view page;
        std::vector<std::string> addresses;
    } cases[] = {
        {R"(<a href="a.htm">)", {"a.htm"}},
        {"<a href='a.htm'>", {"a.htm"}},
        {"<a href=a.htm>", {"a.htm"}},
        {"<A\nHREF\n=\n\"a.htm\"\n>", {"a.htm"}},
        {"href=\"no tag\"<a\thref=a.htm>", {"a.htm"}},
        {"<a title='>' href=a.htm>", {"a.htm"}},
        {"<a title=href=b.htm href=a.htm>", {"a.htm"}},
        {"<a href=\"a&amp;b.htm\"><a href=\"caf&eacute;.htm\"><a href=\"&#x61;.htm\">",
         {"a&b.htm", "caf\xC3\xA9.htm", "a.htm"}},
        {"<a href=\"?a=1&copy=2\">", {"?a=1&copy=2"}},
        {"<a href=\"  a.htm\n\">", {"a.htm"}},
        {"<a href=\"a.htm", {}},
        {"<a href=\"\"><a href><a href=>", {}},
        {"<!-- <a href=a.htm> --><a href=b.htm>", {"b.htm"}},
        {"<!--><a href=a.htm>", {"a.htm"}},
        {"<script>'<a href=a.htm>'</script><a href=b.htm>", {"b.htm"}},
        {"<title><a href=a.htm></title><title/><a href=b.htm>", {}},
        {"<?xml version=\"1.0\"?><title/><a href=\"b.htm\"/>", {"b.htm"}},
        {"</a href=a.htm>", {}},
        {"1 < 2 <a href=a.htm> <", {"a.htm"}},
    };
    for (const auto& c : cases) EXPECT_EQ(in_page(c.page), c.addresses) << c.page;
}

TEST(PageReferences, AreThoseOfEveryElementThatHasOne) {
    const struct {
        std::string_view page;
        std::vector<std::string> addresses;
    } cases[] = {
        {"<body background=b.gif><td background=t.gif>", {"b.gif", "t.gif"}},
        {"<frameset><frame src=a.htm></frameset><iframe src=b.htm></iframe>", {"a.htm", "b.htm"}},
        {"<img src=a.jpg srcset='b.jpg 1x, c.jpg 2x,d.jpg'>", {"a.jpg", "b.jpg", "c.jpg", "d.jpg"}},
        {"<img srcset='data:image/png;base64,AA== 1x, b.jpg 2x'>", {"data:image/png;base64,AA==", "b.jpg"}},
        {"<img srcset=' ,a.jpg, , b.jpg calc(1,2), c.jpg'>", {"a.jpg", "b.jpg", "c.jpg"}},
        {"<link rel=stylesheet href=s.css><script src=x.js></script>", {"s.css", "x.js"}},
        {"<video src=v poster=p><source src=s><track src=t></video>", {"v", "p", "s", "t"}},
        {"<svg><image xlink:href=i.png /><use href='u.svg#x'/></svg>", {"i.png", "u.svg#x"}},
        {"<object data=o></object><embed src=e><input type=image src=i>", {"o", "e", "i"}},
        {"<map><area href=a.htm></map>", {"a.htm"}},
        {"<meta http-equiv=Refresh content='3; URL=\"next.htm\"'><meta http-equiv=refresh content=5>", {"next.htm"}},
        {"<p style=\"background:url(&quot;a.gif&quot;)\">", {"a.gif"}},
        {"<style>@import 'i.css'; p{background:URL( b.gif )} /* url(no) */</style>", {"i.css", "b.gif"}},
        {"<p href=no><img alt=no>", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(in_page(c.page), c.addresses) << c.page;
}

TEST(StyleReferences, AreThoseOfUrlsAndImports) {
    const struct {
        std::string_view style;
        std::vector<std::string> addresses;
    } cases[] = {
        {"a{b:url(x.gif)}", {"x.gif"}},
        {"a{b:url('x (1).gif')}", {"x (1).gif"}},
        {"a{b:url(x\\ y.gif)}", {"x y.gif"}},
        {"a{b:url(\\78 .gif)}", {"x.gif"}},
        {"@import url(i.css);@import \"j.css\" screen;", {"i.css", "j.css"}},
        {"a{content:'url(no)'} a{b:url(x.gif)}", {"x.gif"}},
        {"a{b:myurl(no)} a{b:url (no)}", {}},
        {"a{b:url(x.gif", {"x.gif"}},
        {"/* url(no)", {}},
        {"a{content:'open\nb:url(x.gif)}", {"x.gif"}},
        {"@import", {}},
        {"\\", {}},
        {"a{b:url(\"\\", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(addresses(references_of_style(c.style)), c.addresses) << c.style;
}

TEST(Addresses, LeadToAPathFromTheRoot) {
    const struct {
        std::string_view page, address;
        AddressKind kind;
        std::string path;
    } cases[] = {
        {"a.htm", "b.htm", AddressKind::local, "b.htm"},
        {"d/a.htm", "b.htm", AddressKind::local, "d/b.htm"},
        {"d/a.htm", "../b.htm#part", AddressKind::local, "b.htm"},
        {"d/a.htm", "/b.htm?query", AddressKind::local, "b.htm"},
        {"d/a.htm", "#part", AddressKind::local, "d/a.htm"},
        {"a.htm", "d\\b%20c.htm", AddressKind::local, "d/b c.htm"},
        {"a.htm", "./x/./..//b.htm", AddressKind::local, "b.htm"},
        {"a.htm", "100%.htm", AddressKind::local, "100%.htm"},
        {"a.htm", " b\n.htm ", AddressKind::local, "b.htm"},
        {"d/a.htm", "../../b.htm", AddressKind::climbing, ""},
        {"a.htm", "%2e%2e/b.htm", AddressKind::climbing, ""},
        {"a.htm", "FILE:///etc/passwd", AddressKind::climbing, ""},
        {"a.htm", "C:\\pages\\b.htm", AddressKind::climbing, ""},
        {"a.htm", "\\\\host\\share\\b.htm", AddressKind::climbing, ""},
        {"a.htm", "b%00.htm", AddressKind::climbing, ""},
        {"a.htm", "//host/b.htm", AddressKind::elsewhere, ""},
        {"a.htm", "http://host/b.htm", AddressKind::elsewhere, ""},
        {"a.htm", "java\nscript:alert(1)", AddressKind::elsewhere, ""},
        {"a.htm", "mailto:a@b", AddressKind::elsewhere, ""},
    };
    for (const auto& c : cases) {
        const Address address = resolve(c.page, c.address);
        EXPECT_EQ(address.kind, c.kind) << c.address;
        EXPECT_EQ(address.path, c.path) << c.address;
    }
    EXPECT_EQ(resolve("a.htm", "b%20c.htm").written_path, "b%20c.htm");
    EXPECT_EQ(resolve("a.htm", "b.htm#x%20y").fragment, "x y");
}

TEST(Addresses, CountFromTheBaseThatAPageNames) {
    EXPECT_EQ(resolve("d/a.htm", "", "b.htm").path, "d/b.htm");
    EXPECT_EQ(resolve("d/a.htm", "e/", "b.htm").path, "d/e/b.htm");
    EXPECT_EQ(resolve("d/a.htm", "../x.htm", "b.htm").path, "b.htm");
    EXPECT_EQ(resolve("d/a.htm", "http://host/", "b.htm").kind, AddressKind::elsewhere);
    EXPECT_EQ(resolve("d/a.htm", "http://host/", "file:///b").kind, AddressKind::elsewhere);
}

TEST(Addresses, NamesComeBackFromTheirPercents) {
    for (const std::string name :
         {"a%20b \"#?&<>\xC3\xA9:.jpg", " a.jpg", "a.jpg ", "a\\b.jpg", "C:x.jpg", "%2e.jpg"}) {
        const std::string written = encode_percents(name);
        EXPECT_EQ(written.find_first_of("\"#?&<>:"), std::string::npos);
        EXPECT_EQ(resolve("0001.htm", written).path, name);
    }
}

TEST(Pages, AreReadInTheirCharacterSet) {
    const std::string e = "\xC3\xA9";
    const struct {
        std::string bytes, text;
    } cases[] = {
        {"<p>\xE9", "<p>" + e},
        {"<p>" + e, "<p>" + e},
        {"\xEF\xBB\xBF<p>" + e, "<p>" + e},
        {std::string("\xFF\xFE<\0p\0>\0\xE9\0", 10), "<p>" + e},
        {std::string("<\0p\0>\0\xE9\0", 8), "<p>" + e},
        {"<meta charset=koi8-r>\xC1", "<meta charset=koi8-r>\xD0\xB0"},
        {"<meta http-equiv=content-type content=\"text/html; charset=koi8-r\">\xC1",
         "<meta http-equiv=content-type content=\"text/html; charset=koi8-r\">\xD0\xB0"},
        {"<meta charset=iso-8859-1>\x80", "<meta charset=iso-8859-1>\xE2\x82\xAC"},
        {"<meta charset=utf-16>" + e, "<meta charset=utf-16>" + e},
        {"<?xml encoding='koi8-r'?>\xC1", "<?xml encoding='koi8-r'?>\xD0\xB0"},
    };
    for (const auto& c : cases) EXPECT_EQ(decode_page(c.bytes), c.text);
}

TEST(Pages, HaveATitleAndLines) {
    const std::string_view page =
        "<html><head><title> A\n  &lt;title&gt; </title><style>p{}</style></head>"
        "<body><h1>Head</h1>one <b>word</b>\nmore<br>next<script>no</script><table><tr><td>x</table></body>";
    EXPECT_EQ(title_of(page), "A <title>");
    EXPECT_THAT(lines_of_page(page), ElementsAre("Head", "one word more", "next", "x"));
    EXPECT_THAT(lines_of_page(""), IsEmpty());
}

TEST(CharacterReferences, BecomeCharacters) {
    const struct {
        std::string_view text;
        std::string_view decoded;
    } cases[] = {
        {"a &amp; b &lt;&gt;&quot;", "a & b <>\""},
        {"&#233;&#xE9;&#XE9;", "\xC3\xA9\xC3\xA9\xC3\xA9"},
        {"&#128;", "\xE2\x82\xAC"},
        {"&#0;&#xD800;", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"&unknown; & &; &#; &#x;", "&unknown; & &; &#; &#x;"},
        {"&#99999999999;", "&#99999999999;"},
        {"R&D", "R&D"},
        {"&amp", "&"},
    };
    for (const auto& c : cases) EXPECT_EQ(decode_references(c.text), c.decoded) << c.text;
}

TEST(PageReferences, OfHostilePagesComeInReasonableTime) {
    constexpr int count = 100'000;  // quadratic work on it would take minutes
    for (const std::string_view piece :
         {"<", "<!--", "<!", "</", "<a ", "<a b=", "<a b='", "<title>", "</title", "<style>url(", "<p style='url(",
          "@import ", "url('", "&", "&#", "<img srcset='a ,", "/*", "<?", "\"'"}) {
        std::string page;
        for (int i = 0; i < count; ++i) page += piece;
        references_of_page(page);
        references_of_style(page);
        lines_of_page(decode_page(page));
    }
}

TEST(LineCounter, CountsLinesOfEveryKind) {
    LineCounter lines("a\nb\r\nc\rd");
    EXPECT_EQ(lines.line_at(0), 1U);
    EXPECT_EQ(lines.line_at(2), 2U);
    EXPECT_EQ(lines.line_at(5), 3U);
    EXPECT_EQ(lines.line_at(7), 4U);
}

}  // namespace
}  // namespace quill::htx
