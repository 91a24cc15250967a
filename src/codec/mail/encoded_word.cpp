#include "codec/mail/encoded_word.h"

#include "codec/base64/sixbit.h"
#include "codec/hex.h"
#include "codec/mail/charset.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <optional>
#include <vector>

namespace quill::codec {
namespace {

/// Characters; far more than the 75 of RFC 2047, because senders exceed them.
constexpr std::size_t longest_word = 4096;
constexpr std::size_t longest_charset = 60;

struct Word {
    std::string_view charset;
    std::string bytes;
    std::size_t size = 0;  ///< characters of the word, "=?" to "?="
};

std::string decode_q(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const std::optional<unsigned char> byte = s[i] == '=' ? hex_byte(s.substr(i + 1)) : std::nullopt;
        if (byte) {
            out.push_back(static_cast<char>(*byte));
            i += 2;
        } else {
            out.push_back(s[i] == '_' ? ' ' : s[i]);
        }
    }
    return out;
}

std::string decode_b(std::string_view s) {
    std::vector<char> room(sixbit::decoded_bound(s.size()) + 2);
    sixbit::State state;
    std::size_t size = sixbit::decode(sixbit::Alphabet::base64, s, room.data(), state).written;
    size += sixbit::finish(room.data() + size, state);
    return {room.data(), size};
}

/// Returns the encoded word at the beginning of `s`.
std::optional<Word> read_word(std::string_view s) {
    s = s.substr(0, longest_word);
    const std::size_t charset_end = s.find('?', 2);
    if (charset_end == std::string_view::npos || charset_end > longest_charset || charset_end + 3 > s.size())
        return std::nullopt;
    const char encoding = text::lower(s[charset_end + 1]);
    if ((encoding != 'q' && encoding != 'b') || s[charset_end + 2] != '?') return std::nullopt;
    const std::size_t data = charset_end + 3;
    const std::size_t end = s.find("?=", data);
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view encoded = s.substr(data, end - data);
    if (encoded.find('?') != std::string_view::npos) return std::nullopt;
    Word word;
    word.charset = s.substr(2, charset_end - 2);
    word.charset = word.charset.substr(0, word.charset.find('*'));  // RFC 2231 5: a language after it
    word.bytes = encoding == 'q' ? decode_q(encoded) : decode_b(encoded);
    word.size = end + 2;
    return word;
}

}  // namespace

std::string decode_words(std::string_view value, std::string_view charset) {
    std::string out;
    std::string bytes;  // of successive words of one character set
    std::string_view words_charset;
    const auto flush = [&] {
        if (!bytes.empty()) out += to_utf8(bytes, words_charset);
        bytes.clear();
    };
    std::size_t at = 0;
    std::size_t text_from = 0;
    bool behind_word = false;
    while (true) {
        const std::size_t begin = value.find("=?", at);
        const std::optional<Word> word =
            begin == std::string_view::npos ? std::nullopt : read_word(value.substr(begin));
        if (begin != std::string_view::npos && !word) {
            at = begin + 2;
            continue;
        }
        const std::string_view between = value.substr(text_from, word ? begin - text_from : std::string_view::npos);
        const bool joins = word && behind_word && text::trim(between).empty();
        if (!joins || !text::equal_ignoring_case(words_charset, word->charset)) flush();
        if (!joins) out += text::is_utf8(between) ? std::string(between) : to_utf8(between, charset);
        if (!word) return out;
        words_charset = word->charset;
        bytes += word->bytes;
        behind_word = true;
        at = text_from = begin + word->size;
    }
}

}  // namespace quill::codec
