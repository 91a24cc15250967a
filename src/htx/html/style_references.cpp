#include "htx/html/style_references.h"

#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>

namespace quill::htx {
namespace {

constexpr std::string_view blanks = " \t\n\r\f";

/// Returns the value of a hexadecimal digit, or -1.
constexpr int hex_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const char l = text::lower(c);
    return l >= 'a' && l <= 'f' ? l - 'a' + 10 : -1;
}

/// Reads a style sheet.
class StyleReader {
  public:
    StyleReader(std::string_view style, std::size_t offset, std::vector<Reference>& out)
        : style_(style), offset_(offset), out_(out) {}

    void read() {
        while (at_ < style_.size()) step();
    }

  private:
    char at(std::size_t offset) const { return offset < style_.size() ? style_[offset] : '\0'; }

    bool is_word_part(std::size_t offset) const {
        const char c = text::lower(at(offset));
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' ||
               static_cast<unsigned char>(c) >= 0x80;
    }

    void step() {
        const char c = style_[at_];
        if (c == '/' && at(at_ + 1) == '*') {
            const std::size_t end = style_.find("*/", at_ + 2);
            at_ = end == std::string_view::npos ? style_.size() : end + 2;
        } else if (c == '"' || c == '\'') {
            const std::size_t begin = at_;
            std::string text = quoted();
            if (importing_) add(begin, std::move(text));
        } else if (c == '@') {
            importing_ = text::starts_with_ignoring_case(style_.substr(at_), "@import");
            ++at_;
        } else if (is_word_part(at_)) {
            word();
        } else {
            if (c == ';' || c == '{' || c == '}') importing_ = false;
            at_ += c == '\\' ? 2 : 1;
        }
    }

    void word() {
        const std::size_t begin = at_;
        while (is_word_part(at_)) ++at_;
        const std::string_view name = style_.substr(begin, at_ - begin);
        if (at(at_) != '(' || !text::equal_ignoring_case(name, "url")) return;
        at_ = std::min(style_.find_first_not_of(blanks, at_ + 1), style_.size());
        const char quote = at(at_);
        add(begin, quote == '"' || quote == '\'' ? quoted() : unquoted());
    }

    /// Reads a string from its quote. A line end or the end of the sheet ends an unclosed one.
    std::string quoted() {
        const char quote = style_[at_++];
        std::string text;
        while (at_ < style_.size()) {
            const char c = style_[at_];
            if (c == quote || c == '\n') {
                ++at_;
                break;
            }
            take(text);
        }
        return text;
    }

    std::string unquoted() {
        std::string text;
        while (at_ < style_.size() && style_[at_] != ')') take(text);
        text.erase(text.find_last_not_of(blanks) + 1);
        return text;
    }

    /// Appends the next character, with an escape decoded (CSS Syntax 4.3.7).
    void take(std::string& text) {
        const char c = style_[at_++];
        if (c != '\\') {
            text += c;
            return;
        }
        constexpr int most_digits = 6;
        char32_t number = 0;
        int digits = 0;
        for (; digits < most_digits && hex_digit(at(at_)) >= 0; ++digits)
            number = number * 16 + static_cast<char32_t>(hex_digit(at(at_++)));
        if (digits != 0) {
            const bool is_character = number != 0 && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
            text::append_utf8(text, is_character ? number : 0xFFFD);
            if (blanks.find(at(at_)) != std::string_view::npos && at_ < style_.size()) ++at_;
        } else if (at_ < style_.size()) {
            if (style_[at_] != '\n') text += style_[at_];
            ++at_;
        }
    }

    void add(std::size_t begin, std::string address) {
        if (!address.empty()) out_.push_back({ReferenceKind::part, std::move(address), offset_ + begin});
        importing_ = false;
    }

    std::string_view style_;
    std::size_t offset_;
    std::vector<Reference>& out_;
    std::size_t at_ = 0;
    bool importing_ = false;  ///< the next string is the address of an @import
};

}  // namespace

void add_style_references(std::string_view style, std::size_t offset, std::vector<Reference>& out) {
    StyleReader(style, offset, out).read();
}

std::vector<Reference> references_of_style(std::string_view style) {
    std::vector<Reference> out;
    add_style_references(style, 0, out);
    return out;
}

}  // namespace quill::htx
