#pragma once

#include "codec/encoded.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The changes of texts in transit, made on purpose.
namespace quill::tests {

inline std::string each_line(std::string_view text, std::string_view before, std::string_view after = "") {
    std::string out;
    for (const std::string& line : lines_of(text)) out.append(before).append(line).append(after).append("\n");
    return out;
}

inline std::string replaced(std::string text, std::string_view what, std::string_view with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
    return text;
}

inline std::string escaped(std::string_view text) {
    return replaced(replaced(replaced(std::string(text), "&", "&amp;"), "<", "&lt;"), ">", "&gt;");
}

inline std::string numbered(std::string_view text, std::string_view after) {
    std::string out;
    std::size_t number = 0;
    for (const std::string& line : lines_of(text))
        out.append(std::to_string(++number)).append(after).append(line).append("\n");
    return out;
}

/// Returns each byte as a unit of UTF-16.
inline std::string utf16(std::string_view text, bool big, bool marked) {
    std::string out = !marked ? "" : big ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text) {
        if (big) out.push_back('\0');
        out.push_back(c);
        if (!big) out.push_back('\0');
    }
    return out;
}

inline std::string page(std::string_view body) {
    return std::string(
               "<!DOCTYPE html>\n<html><head><title>A cat</title><style>p { color: red }</style></head>\n<body>")
        .append(body)
        .append("</body></html>\n");
}

struct Wrap {
    std::string_view name;
    std::string (*wrap)(std::string_view text);
};

inline const Wrap wraps[] = {
    {"Utf16Little", [](std::string_view text) { return utf16(text, false, true); }},
    {"Utf16Big", [](std::string_view text) { return utf16(text, true, true); }},
    {"Utf16WithoutMark", [](std::string_view text) { return utf16(text, false, false); }},
    {"Mark", [](std::string_view text) { return "\xEF\xBB\xBF" + std::string(text); }},
    {"MarkInside", [](std::string_view text) { return "A cat follows.\n\n\xEF\xBB\xBF" + std::string(text); }},
    {"PageWithPre", [](std::string_view text) { return page("<pre>\n" + escaped(text) + "</pre>"); }},
    {"PreAlone", [](std::string_view text) { return "<pre>" + escaped(text) + "</pre>\n"; }},
    {"PageWithBr", [](std::string_view text) { return page(each_line(escaped(text), "", "<br>")); }},
    {"PageInOneLine",
     [](std::string_view text) { return page(replaced(each_line(escaped(text), "", "<br/>"), "\n", "")); }},
    {"PageWithP", [](std::string_view text) { return page(each_line(escaped(text), "<p class=\"a\">", "</p>")); }},
    {"PageWithDiv", [](std::string_view text) { return page(each_line(escaped(text), "<div>", "</div>")); }},
    {"PageWithBlanks",
     [](std::string_view text) { return page(each_line(replaced(escaped(text), " ", "&nbsp;"), "", "<br>")); }},
    {"BrAtLineEnds", [](std::string_view text) { return each_line(text, "", "<BR>"); }},
    {"BrForLineEnds", [](std::string_view text) { return replaced(std::string(text), "\n", "<br>"); }},
    {"Escaped", [](std::string_view text) { return escaped(text); }},
    {"QuotesEscaped",
     [](std::string_view text) { return replaced(replaced(escaped(text), "\"", "&quot;"), "'", "&#39;"); }},
    {"Quoted", [](std::string_view text) { return each_line(text, "> "); }},
    {"QuotedWithoutBlank", [](std::string_view text) { return each_line(text, ">"); }},
    {"QuotedByBars", [](std::string_view text) { return each_line(text, "| "); }},
    {"QuotedByColons", [](std::string_view text) { return each_line(text, ": "); }},
    {"QuotedByName", [](std::string_view text) { return each_line(text, "anna> "); }},
    {"QuotedTwice", [](std::string_view text) { return each_line(text, "> > "); }},
    {"QuotedInAnAnswer",
     [](std::string_view text) { return "Anna wrote:\n" + each_line(text, "> ") + "\nA fine cat!\n"; }},
    {"Indented", [](std::string_view text) { return each_line(text, "    "); }},
    {"IndentedByTab", [](std::string_view text) { return each_line(text, "\t"); }},
    {"Numbered", [](std::string_view text) { return numbered(text, "  "); }},
    {"NumberedWithSign", [](std::string_view text) { return numbered(text, ": "); }},
    {"PageOfUtf16", [](std::string_view text) { return utf16(page("<pre>" + escaped(text) + "</pre>"), false, true); }},
};

}  // namespace quill::tests
