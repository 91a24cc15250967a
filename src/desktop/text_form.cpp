#include "desktop/text_form.h"

#include "desktop/shown_text.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>

namespace quill::desktop {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr char16_t held_base = 0xDC00;

constexpr QChar held(char byte) {
    return QChar(static_cast<char16_t>(held_base + static_cast<unsigned char>(byte)));
}

constexpr bool is_held(QChar c) {
    return c.unicode() >= held_base && c.unicode() <= held_base + 0xFF;
}

constexpr bool is_break(QChar c) {
    return c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

using CodePage = std::array<char16_t, 256>;

/// Returns the characters of Windows-1252 by their bytes.
const CodePage& windows_1252() {
    static const CodePage page = [] {
        CodePage made{};
        for (std::size_t byte = 0; byte < made.size(); ++byte) {
            const char one = static_cast<char>(byte);
            const std::string utf8 = text::windows_1252_to_utf8({&one, 1});
            std::string_view rest = utf8;
            made.at(byte) = static_cast<char16_t>(text::next_character(rest));
        }
        return made;
    }();
    return page;
}

/// Returns the length of the UTF-8 character at the beginning of `s`; 0 if there is none.
std::size_t utf8_length(std::string_view s) {
    for (std::size_t length = 1; length <= std::min<std::size_t>(4, s.size()); ++length) {
        if (text::is_utf8(s.substr(0, length))) return length;
    }
    return 0;
}

bool is_mostly_utf8(std::string_view bytes) {
    std::size_t valid = 0, stray = 0;
    while (!bytes.empty()) {
        const std::size_t length = utf8_length(bytes);
        if (length == 0) ++stray;
        if (length > 1) ++valid;
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return valid >= stray;
}

/// Returns the line end at the beginning of `s`; empty if there is none.
std::string_view line_end_at(std::string_view s) {
    if (s.starts_with("\r\n")) return "\r\n";
    if (s.starts_with('\r')) return "\r";
    return s.starts_with('\n') ? "\n" : std::string_view();
}

std::string_view usual_line_end(std::string_view bytes) {
    std::array<std::pair<std::string_view, std::size_t>, 3> counts = {{{"\n", 0}, {"\r\n", 0}, {"\r", 0}}};
    for (std::size_t at = bytes.find_first_of("\r\n"); at < bytes.size(); at = bytes.find_first_of("\r\n", at)) {
        const std::string_view end = line_end_at(bytes.substr(at));
        for (auto& [known, count] : counts) count += known == end ? 1U : 0U;
        at += end.size();
    }
    return std::max_element(counts.begin(), counts.end(),
                            [](const auto& a, const auto& b) { return a.second < b.second; })
        ->first;
}

/// Reads a text character by character.
class TextReader {
  public:
    TextReader(std::string_view bytes, FileText& out) : rest_(bytes), out_(out) {}

    void read() {
        out_.text.reserve(static_cast<qsizetype>(rest_.size()));
        while (!rest_.empty()) {
            const std::string_view end = line_end_at(rest_);
            if (!end.empty()) {
                take_line_end(end);
            } else if (out_.form.utf8) {
                take_utf8();
            } else {
                take(windows_1252().at(static_cast<unsigned char>(rest_.front())), 1);
            }
        }
    }

  private:
    void take_line_end(std::string_view end) {
        if (end != out_.form.line_end) {
            ++out_.odd_ends;
            for (const char byte : end) out_.text += held(byte);
        }
        out_.text += u'\n';
        rest_.remove_prefix(end.size());
    }

    void take_utf8() {
        const std::size_t length = utf8_length(rest_);
        std::string_view character = rest_.substr(0, length);
        take(length == 0 ? char32_t{0} : text::next_character(character), std::max<std::size_t>(length, 1));
    }

    /// Reads `length` bytes, as `character` if that can be shown.
    void take(char32_t character, std::size_t length) {
        if (is_visible(character)) {
            out_.text += QChar::fromUcs4(character);
        } else {
            out_.held += length;
            for (const char byte : rest_.substr(0, length)) out_.text += held(byte);
        }
        rest_.remove_prefix(length);
    }

    std::string_view rest_;
    FileText& out_;
};

/// Returns the character of `text` at `at`: one unit, or a surrogate pair.
QStringView character_at(QStringView text, qsizetype at) {
    const bool pair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    return text.mid(at, pair ? 2 : 1);
}

/// Writes characters, except line ends, in the encoding of a form.
class CharacterWriter {
  public:
    CharacterWriter(const TextForm& form, std::string& out) : utf8_(form.utf8), out_(out) {}

    Status write(QStringView character) {
        const bool pair = character.size() == 2;
        const QChar first = character.front();
        if (!pair && is_held(first)) {
            out_ += static_cast<char>(first.unicode() - held_base);
            return Done{};
        }
        if (!pair && first.isSurrogate()) return Error{ErrorCode::unsupported, 0, "it contains half a character"};
        if (!utf8_) return write_windows_1252(character);
        text::append_utf8(out_, pair ? QChar::surrogateToUcs4(first, character.back()) : first.unicode());
        return Done{};
    }

  private:
    Status write_windows_1252(QStringView character) {
        const CodePage& page = windows_1252();
        const auto known = std::find(page.begin(), page.end(), character.front().unicode());
        if (character.size() > 1 || known == page.end()) {
            return Error{ErrorCode::unsupported, 0,
                         "it is 8-bit text, which has no character \"" + typed(character.toString()) + '"'};
        }
        out_ += static_cast<char>(known - page.begin());
        return Done{};
    }

    bool utf8_;
    std::string& out_;
};

}  // namespace

FileText read_text(std::string_view bytes) {
    FileText out;
    out.form.utf8 = is_mostly_utf8(bytes);
    out.form.line_end = usual_line_end(bytes);
    out.form.byte_order_mark = out.form.utf8 && bytes.starts_with(byte_order_mark);
    if (out.form.byte_order_mark) bytes.remove_prefix(byte_order_mark.size());
    TextReader(bytes, out).read();
    return out;
}

Result<std::string> text_bytes(QStringView text, const TextForm& form) {
    std::string out(form.byte_order_mark ? byte_order_mark : std::string_view());
    CharacterWriter writer(form, out);
    bool after_held_end = false;  // its line break is written already
    for (qsizetype at = 0; at < text.size();) {
        const QStringView character = character_at(text, at);
        const QChar first = character.front();
        if (!is_break(first)) {
            if (const Status written = writer.write(character); !written) return written.error();
        } else if (!after_held_end) {
            out += form.line_end;
        }
        after_held_end = first == held('\r') || first == held('\n');
        at += character.size();
    }
    return out;
}

}  // namespace quill::desktop
