#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::htx {

/// An attribute of a tag as written: the value without its quotes, its character references not replaced.
struct Attribute {
    std::string_view name;
    std::string_view value;
};

enum class TokenKind : std::uint8_t {
    text,       ///< characters between tags
    start_tag,  ///< <a href=x>
    end_tag,    ///< </a>
    raw_text    ///< contents of a style, script, title or textarea element
};

/// A piece of a page. Comments and declarations are skipped.
struct Token {
    TokenKind kind = TokenKind::text;
    std::string_view name = {};  ///< of a tag, or of the element that contains raw text; as written
    std::string_view text = {};  ///< of text and raw text, its character references not replaced
    std::vector<Attribute> attributes = {};
    std::size_t offset = 0;     ///< bytes from the beginning of the page
    bool self_closing = false;  ///< <a/>

    /// Returns true for a tag or raw text of the element `element`, given in lower case.
    bool is(std::string_view element) const;
    /// Returns the value of the first attribute `attribute`, given in lower case; nullopt if there is none.
    std::optional<std::string_view> attribute(std::string_view attribute) const;
};

/// Reads a page token by token (HTML Standard 13.2.5, without the rules for where an element may occur). Any bytes are
/// a page. A tag that is cut off by the end of the page is skipped. Time is linear in the size of the page.
class HtmlReader {
  public:
    /// `page` must outlive the reader; 8-bit text or UTF-8.
    explicit HtmlReader(std::string_view page);

    /// Returns nullopt at the end of the page.
    std::optional<Token> next();

  private:
    std::optional<Token> read_raw_text();
    Token read_text();
    std::optional<Token> read_tag();
    bool read_attribute(Token& tag);
    std::string_view read_value();
    void skip_comment();
    void skip_blanks();
    char at(std::size_t offset) const { return offset < page_.size() ? page_[offset] : '\0'; }

    std::string_view page_;
    std::size_t at_ = 0;
    std::string_view raw_element_;  ///< the element whose raw text comes next
    bool is_xml_ = false;
};

/// Replaces the character references in `text` (&amp; &#233; &eacute;) with UTF-8. Names are those of HTML 4; other
/// names stay unchanged, and so does one without a semicolon before a letter, a digit or an equals sign.
std::string decode_references(std::string_view text);

}  // namespace quill::htx
