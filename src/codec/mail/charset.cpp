#include "codec/mail/charset.h"

#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>

namespace quill::codec {
namespace {

constexpr std::size_t longest_charset = 40;

/// Names that senders use and the system does not know, or knows as a set smaller than what is sent.
struct CharsetAlias {
    std::string_view name;  // lower case
    std::string_view meant;
};
constexpr std::array aliases = {
    CharsetAlias{"us-ascii", "WINDOWS-1252"},   CharsetAlias{"ascii", "WINDOWS-1252"},
    CharsetAlias{"iso-8859-1", "WINDOWS-1252"}, CharsetAlias{"iso8859-1", "WINDOWS-1252"},
    CharsetAlias{"latin1", "WINDOWS-1252"},     CharsetAlias{"x-sjis", "CP932"},
    CharsetAlias{"shift_jis", "CP932"},         CharsetAlias{"ks_c_5601-1987", "CP949"},
    CharsetAlias{"gb2312", "GB18030"},          CharsetAlias{"x-gbk", "GB18030"},
    CharsetAlias{"x-mac-roman", "MACINTOSH"},
};

/// Rejects anything that is more than a name to iconv ("//IGNORE", a path).
bool is_charset_name(std::string_view s) {
    return !s.empty() && s.size() <= longest_charset && std::all_of(s.begin(), s.end(), [](char c) {
        const char l = text::lower(c);
        return (l >= 'a' && l <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.' || c == ':';
    });
}

std::string convert(iconv_t converter, std::string_view bytes) {
    std::string out;
    std::array<char, 512> room = {};
    std::string copy(bytes);
    char* in = copy.data();
    std::size_t left = copy.size();
    while (left > 0) {
        char* to = room.data();
        std::size_t free = room.size();
        const std::size_t done = iconv(converter, &in, &left, &to, &free);
        const int why = errno;
        out.append(room.data(), room.size() - free);
        if (done != static_cast<std::size_t>(-1) || (why == E2BIG && free < room.size())) continue;
        text::append_utf8(out, U'\uFFFD');
        if (why == EINVAL) break;
        ++in;
        --left;
    }
    return out;
}

}  // namespace

std::string to_utf8(std::string_view bytes, std::string_view charset) {
    std::string name = text::to_lower(text::trim(charset));
    if (!is_charset_name(name)) return text::to_utf8(bytes);
    for (const CharsetAlias& alias : aliases) {
        if (alias.name == name) name = alias.meant;
    }
    if (name == "WINDOWS-1252" || (name == "utf-8" && text::is_utf8(bytes))) return text::to_utf8(bytes);
    const iconv_t converter = iconv_open("UTF-8", name.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1)) return text::to_utf8(bytes);
    std::string out = convert(converter, bytes);
    iconv_close(converter);
    return text::is_utf8(out) ? out : text::to_utf8(bytes);
}

}  // namespace quill::codec
