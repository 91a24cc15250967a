#include "htx/html/html_reader.h"

#include "text/ascii.h"

#include <algorithm>
#include <array>

namespace quill::htx {
namespace {

constexpr std::string_view blanks = " \t\n\r\f";

/// Elements whose content is text up to their own end tag, whatever it contains.
constexpr std::array<std::string_view, 5> raw_elements = {"style", "script", "title", "textarea", "xmp"};

constexpr bool is_blank(char c) {
    return blanks.find(c) != std::string_view::npos;
}

constexpr bool is_letter(char c) {
    return text::lower(c) >= 'a' && text::lower(c) <= 'z';
}

bool is_xml(std::string_view page) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (page.starts_with(mark)) page.remove_prefix(mark.size());
    page.remove_prefix(std::min(page.find_first_not_of(blanks), page.size()));
    return page.starts_with("<?xml");
}

}  // namespace

bool Token::is(std::string_view element) const {
    return text::equal_ignoring_case(name, element);
}

std::optional<std::string_view> Token::attribute(std::string_view attribute) const {
    for (const Attribute& candidate : attributes) {
        if (text::equal_ignoring_case(candidate.name, attribute)) return candidate.value;
    }
    return std::nullopt;
}

HtmlReader::HtmlReader(std::string_view page) : page_(page), is_xml_(is_xml(page)) {}

std::optional<Token> HtmlReader::next() {
    while (at_ < page_.size()) {
        if (!raw_element_.empty()) {
            if (std::optional<Token> raw = read_raw_text()) return raw;
            continue;
        }
        const char follower = page_[at_] == '<' ? at(at_ + 1) : '\0';
        if (follower == '!' || follower == '?' ||
            (follower == '/' && !is_letter(at(at_ + 2)) && at_ + 2 < page_.size())) {
            skip_comment();
        } else if (follower == '/' || is_letter(follower)) {
            if (std::optional<Token> tag = read_tag()) return tag;
        } else {
            return read_text();
        }
    }
    return std::nullopt;
}

/// Reads up to the element's end tag, or to the end of the page. Returns nullopt if the end tag follows at once.
std::optional<Token> HtmlReader::read_raw_text() {
    const std::string_view element = raw_element_;
    raw_element_ = {};
    std::size_t end = at_;
    while ((end = page_.find("</", end)) != std::string_view::npos) {
        const char after = at(end + 2 + element.size());
        const bool ends = text::starts_with_ignoring_case(page_.substr(end + 2), element);
        if (ends && (is_blank(after) || after == '/' || after == '>')) break;
        end += 2;
    }
    end = std::min(end, page_.size());
    Token token{.kind = TokenKind::raw_text, .name = element, .text = page_.substr(at_, end - at_), .offset = at_};
    at_ = end;
    if (token.text.empty()) return std::nullopt;
    return token;
}

Token HtmlReader::read_text() {
    const std::size_t begin = at_;
    at_ = std::min(page_.find('<', at_ + 1), page_.size());
    return {.kind = TokenKind::text, .text = page_.substr(begin, at_ - begin), .offset = begin};
}

/// Skips a comment, a declaration, or anything else read as a comment.
void HtmlReader::skip_comment() {
    const bool is_comment = page_.substr(at_).starts_with("<!--");
    if (is_comment && (at(at_ + 4) == '>' || page_.substr(at_ + 4, 2) == "->")) {
        at_ = page_.find('>', at_) + 1;
        return;
    }
    const std::string_view end = is_comment ? "-->" : ">";
    const std::size_t found = page_.find(end, at_ + (is_comment ? 4 : 2));
    at_ = found == std::string_view::npos ? page_.size() : found + end.size();
}

void HtmlReader::skip_blanks() {
    at_ = std::min(page_.find_first_not_of(blanks, at_), page_.size());
}

std::optional<Token> HtmlReader::read_tag() {
    Token tag{.kind = TokenKind::start_tag, .offset = at_++};
    if (at(at_) == '/') {
        tag.kind = TokenKind::end_tag;
        ++at_;
    }
    const std::size_t name = at_;
    at_ = std::min(page_.find_first_of(" \t\n\r\f/>", at_), page_.size());
    tag.name = page_.substr(name, at_ - name);
    while (read_attribute(tag)) {
    }
    if (at_ == page_.size()) return std::nullopt;
    ++at_;  // the bracket
    const auto* const raw =
        std::find_if(raw_elements.begin(), raw_elements.end(), [&](auto name_of_raw) { return tag.is(name_of_raw); });
    const bool is_empty = is_xml_ && tag.self_closing;
    if (tag.kind == TokenKind::start_tag && raw != raw_elements.end() && !is_empty) raw_element_ = *raw;
    return tag;
}

/// Reads one attribute into the tag; returns false at the tag's closing bracket or at the end of the page.
bool HtmlReader::read_attribute(Token& tag) {
    skip_blanks();
    if (at_ == page_.size() || page_[at_] == '>') return false;
    if (page_[at_] == '/') {
        tag.self_closing = at(++at_) == '>';
        return true;
    }
    const std::size_t name = at_;
    at_ = std::min(page_.find_first_of(" \t\n\r\f/>=", at_ + 1), page_.size());
    Attribute attribute{page_.substr(name, at_ - name), {}};
    skip_blanks();
    if (at(at_) == '=') {
        ++at_;
        skip_blanks();
        attribute.value = read_value();
    }
    tag.attributes.push_back(attribute);
    return true;
}

std::string_view HtmlReader::read_value() {
    const char quote = at(at_);
    if (quote == '"' || quote == '\'') {
        const std::size_t begin = ++at_;
        const std::size_t end = std::min(page_.find(quote, begin), page_.size());
        at_ = std::min(end + 1, page_.size());
        return page_.substr(begin, end - begin);
    }
    const std::size_t begin = at_;
    at_ = std::min(page_.find_first_of(" \t\n\r\f>", at_), page_.size());
    return page_.substr(begin, at_ - begin);
}

}  // namespace quill::htx
