#include "htx/html/references.h"

#include "htx/html/html_reader.h"
#include "htx/html/style_references.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <optional>

namespace quill::htx {
namespace {

constexpr std::string_view blanks = " \t\n\r\f";

enum class Form : std::uint8_t { address, candidates };

struct Row {
    std::string_view element;  ///< empty: every element
    std::string_view attribute;
    ReferenceKind kind;
    Form form = Form::address;
};

constexpr auto link = ReferenceKind::link;
constexpr auto part = ReferenceKind::part;

/// The attributes that contain addresses (HTML Standard, table of attributes; HTML 4 for dropped ones; SVG 2 15).
constexpr std::array<Row, 27> rows = {{
    {"a", "href", link},
    {"a", "xlink:href", link},
    {"area", "href", link},
    {"img", "src", part},
    {"img", "srcset", part, Form::candidates},
    {"img", "longdesc", link},
    {"source", "src", part},
    {"source", "srcset", part, Form::candidates},
    {"link", "href", part},
    {"frame", "src", part},
    {"iframe", "src", part},
    {"", "background", part},
    {"script", "src", part},
    {"embed", "src", part},
    {"object", "data", part},
    {"video", "src", part},
    {"video", "poster", part},
    {"audio", "src", part},
    {"track", "src", part},
    {"input", "src", part},
    {"image", "href", part},
    {"image", "xlink:href", part},
    {"use", "href", part},
    {"use", "xlink:href", part},
    {"script", "xlink:href", part},
    {"feimage", "href", part},
    {"feimage", "xlink:href", part},
}};

std::string_view trim(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(begin);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// Adds the addresses of a srcset (HTML Standard 4.8.4.2.2): each ends at a blank, and its descriptors at a comma that
/// is not in brackets.
void add_candidates(std::string_view text, std::size_t offset, std::vector<Reference>& out) {
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\n\r\f,"), text.size()));
        if (text.empty()) return;
        std::string_view address = text.substr(0, text.find_first_of(blanks));
        text.remove_prefix(address.size());
        const bool ends = address.ends_with(',');
        address = address.substr(0, address.find_last_not_of(',') + 1);
        out.push_back({part, std::string(address), offset});
        int depth = 0;
        std::size_t end = 0;
        for (; !ends && end < text.size() && (text[end] != ',' || depth > 0); ++end) {
            if (text[end] == '(') ++depth;
            if (text[end] == ')') --depth;
        }
        text.remove_prefix(end);
    }
}

/// Returns the address in the content of a meta refresh, "5; url=next.htm"; empty if it only waits.
std::string refresh_address(std::string_view content) {
    const std::size_t end = content.find_first_of(";,");
    if (end == std::string_view::npos) return {};
    content = trim(content.substr(end + 1));
    if (text::starts_with_ignoring_case(content, "url")) {
        const std::string_view rest = trim(content.substr(3));
        if (rest.starts_with('=')) content = trim(rest.substr(1));
    }
    if (content.starts_with('"') || content.starts_with('\'')) {
        const char quote = content.front();
        content.remove_prefix(1);
        content = content.substr(0, content.find(quote));
    }
    return std::string(trim(content));
}

/// Collects the addresses in the tags of a page.
class Collector {
  public:
    void add(const Token& token) {
        if (token.kind == TokenKind::raw_text) {
            if (token.is("style")) add_style_references(token.text, token.offset, page.references);
            return;
        }
        if (token.kind != TokenKind::start_tag) return;
        if (token.is("base") && page.base.empty())
            page.base = trim(decode_references(token.attribute("href").value_or("")));
        if (token.is("meta") && text::equal_ignoring_case(token.attribute("http-equiv").value_or(""), "refresh")) {
            put(link, refresh_address(decode_references(token.attribute("content").value_or(""))), token.offset);
        }
        for (const Attribute& attribute : token.attributes) add(token, attribute);
    }

    PageReferences page;

  private:
    void add(const Token& token, const Attribute& attribute) {
        if (text::equal_ignoring_case(attribute.name, "style")) {
            const std::size_t before = page.references.size();
            add_style_references(decode_references(attribute.value), 0, page.references);
            for (std::size_t i = before; i < page.references.size(); ++i) page.references[i].offset = token.offset;
            return;
        }
        const auto* const row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) {
            return text::equal_ignoring_case(attribute.name, r.attribute) && (r.element.empty() || token.is(r.element));
        });
        if (row == rows.end()) return;
        const std::string value = decode_references(attribute.value);
        if (row->form == Form::candidates) {
            add_candidates(value, token.offset, page.references);
        } else {
            put(row->kind, std::string(trim(value)), token.offset);
        }
    }

    void put(ReferenceKind kind, std::string address, std::size_t offset) {
        if (!address.empty()) page.references.push_back({kind, std::move(address), offset});
    }
};

}  // namespace

PageReferences references_of_page(std::string_view page) {
    Collector collector;
    HtmlReader reader(page);
    while (const std::optional<Token> token = reader.next()) collector.add(*token);
    return std::move(collector.page);
}

}  // namespace quill::htx
