#include "archive/names/member_names.h"

#include "archive/container/format.h"
#include "archive/names/letter_statistics.h"
#include "checksum/checksum.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <iconv.h>
#include <optional>
#include <utility>

namespace quill::zip {
namespace {

constexpr std::string_view utf8_page = "UTF-8";
constexpr std::size_t most_names_looked_at = 2000;
constexpr std::size_t most_decoded = 16U << 20U;
constexpr std::string_view name_for_too_many = "unreadable";
constexpr std::string_view western_dos = "CP437", russian_dos = "CP866";
/// Tried in this order; a later one is chosen only if it reads better.
constexpr std::array<std::string_view, 4> legacy_pages{western_dos, russian_dos, "CP932", "CP1252"};

bool is_ascii(std::string_view s) {
    return std::all_of(s.begin(), s.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// A converter to UTF-8 of the C library.
class Converter {
  public:
    explicit Converter(std::string_view page) : handle_(iconv_open("UTF-8", std::string(page).c_str())) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (is_open()) iconv_close(handle_);
    }

    /// Returns nullopt if the code page does not define all of `bytes`, or if the system does not know the page.
    std::optional<std::string> convert(std::string_view bytes) {
        if (!is_open()) return std::nullopt;
        constexpr std::size_t most_per_byte = 4;
        std::string in(bytes), out(bytes.size() * most_per_byte + 1, '\0');
        char *from = in.data(), *to = out.data();
        std::size_t in_left = in.size(), out_left = out.size();
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        if (iconv(handle_, &from, &in_left, &to, &out_left) == static_cast<std::size_t>(-1)) return std::nullopt;
        out.resize(out.size() - out_left);
        return out;
    }

  private:
    bool is_open() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    iconv_t handle_;
};

/// The kinds of characters that distinguish a right reading from a wrong one.
enum class Script { ascii_letter, latin, cyrillic, kana_or_kanji, other_letter, neutral, unlikely };

Script script_of(char32_t c) {
    if ((c | 0x20U) >= U'a' && (c | 0x20U) <= U'z') return Script::ascii_letter;
    if (c < 0x80) return Script::neutral;
    if (c < 0xA0) return Script::unlikely;
    if (c >= 0xC0 && c <= 0x17F && c != 0xD7 && c != 0xF7) return Script::latin;
    if (c >= 0x0400 && c <= 0x045F) return Script::cyrillic;
    if ((c >= 0x3040 && c <= 0x30FF) || (c >= 0x4E00 && c <= 0x9FFF) || c == 0x3005 || (c >= 0xFF01 && c <= 0xFF5E)) {
        return Script::kana_or_kanji;
    }
    if (c >= 0xFF61 && c <= 0xFF9F) return Script::unlikely;  // half-width: far rarer than its bytes in other pages
    if (c >= 0x2500 && c <= 0x25FF) return Script::unlikely;  // line drawing
    if (c >= 0x0370 && c <= 0x03FF) return Script::other_letter;
    return Script::neutral;
}

bool is_capital(char32_t c) {
    return (c >= U'A' && c <= U'Z') || (c >= 0xC0 && c <= 0xDE) || (c >= 0x0410 && c <= 0x042F);
}

constexpr int unlikely_cost = -8;
constexpr int mixed_scripts_cost = -6;
constexpr int odd_capital_cost = -3;
constexpr int pair_of_accents_cost = -2;

/// Returns the score of one character after another.
int score_pair(char32_t before, char32_t c) {
    const Script script = script_of(c), last = script_of(before);
    int score = 0;
    if (script == Script::unlikely) return unlikely_cost;
    if (script == Script::latin) score += last == Script::latin ? pair_of_accents_cost : 2;
    if (script == Script::cyrillic) score += last == Script::cyrillic ? 3 : 1;
    // For two bytes each; a single one is more often an accented letter and the one after it.
    if (script == Script::kana_or_kanji) score += last == Script::kana_or_kanji ? 5 : 1;
    if (script == Script::other_letter) score += -1;
    if (script == Script::neutral && c >= 0x80) score += -2;
    const auto is_word = [](Script s) { return s != Script::neutral && s != Script::unlikely; };
    const auto alphabet = [](Script s) { return s == Script::latin ? Script::ascii_letter : s; };
    if (is_word(script) && is_word(last) && script != Script::kana_or_kanji && last != Script::kana_or_kanji) {
        if (alphabet(script) != alphabet(last)) score += mixed_scripts_cost;
        if (c >= 0x80 && is_capital(c) && !is_capital(before)) score += odd_capital_cost;
    }
    return score;
}

int score(std::string_view utf8) {
    int sum = 0;
    char32_t before = U' ';
    while (!utf8.empty()) {
        const char32_t c = text::next_character(utf8);
        sum += score_pair(before, c);
        before = c;
    }
    return sum;
}

/// Returns the name in the Unicode path field, if its CRC shows that it is meant for this name.
std::optional<std::string_view> unicode_path(const Member& member) {
    if (member.extra.empty()) return std::nullopt;
    const std::optional<std::string_view> field = extra_field(member.extra, extra_unicode_path);
    constexpr std::size_t name_at = 5;  // after version and CRC
    if (!field || field->size() < name_at || field->front() != 1) return std::nullopt;
    const std::string_view name = field->substr(name_at);
    if (get32(*field, 1) != quill::crc32(0, member.raw_name) || !text::is_utf8(name)) return std::nullopt;
    return name;
}

/// Returns the name if the file has it in UTF-8, as indicated, or in ASCII.
std::optional<std::string_view> plain_name(const Member& member) {
    if (const std::optional<std::string_view> name = unicode_path(member)) return name;
    const bool says_so = (member.flags & utf8_flag) != 0 && text::is_utf8(member.raw_name);
    return says_so || is_ascii(member.raw_name) ? std::optional(member.raw_name) : std::nullopt;
}

/// Nearly all bytes are letters in both DOS pages: the frequency of these letters decides.
std::string_view likelier_dos_page(const std::vector<std::string_view>& names) {
    Converter western(western_dos), russian(russian_dos);
    double for_western = 0;
    for (const std::string_view name : names) {
        const std::optional<std::string> as_western = western.convert(name), as_russian = russian.convert(name);
        if (as_western) for_western += likelihood(*as_western, Reading::western);
        if (as_russian) for_western -= likelihood(*as_russian, Reading::russian);
    }
    return for_western >= 0 ? western_dos : russian_dos;
}

}  // namespace

std::string_view detect_code_page(const std::vector<std::string_view>& names) {
    std::string_view best = legacy_pages.front();
    std::optional<int> best_score;
    for (const std::string_view page : legacy_pages) {
        Converter converter(page);
        int sum = 0;
        bool defined = true;
        for (std::size_t i = 0; i < names.size() && defined; ++i) {
            const std::optional<std::string> name = converter.convert(names[i]);
            defined = name.has_value();
            if (defined) sum += score(*name);
        }
        if (defined && (!best_score || sum > *best_score)) {
            best = page;
            best_score = sum;
        }
    }
    return best == western_dos || best == russian_dos ? likelier_dos_page(names) : best;
}

std::string from_code_page(std::string_view bytes, std::string_view code_page) {
    if (code_page == utf8_page) return text::to_utf8(bytes);
    return Converter(code_page).convert(bytes).value_or(text::windows_1252_to_utf8(bytes));
}

std::optional<CharacterSet> character_set(std::string_view name) {
    const auto* const set = std::find_if(character_sets.begin(), character_sets.end(), [&](const CharacterSet& each) {
        return text::equal_ignoring_case(each.name, name);
    });
    return set == character_sets.end() ? std::nullopt : std::optional(*set);
}

bool decode_names(std::vector<Member>& members, std::deque<std::string>& decoded, std::string_view code_page) {
    decoded.clear();
    std::vector<std::string_view> sample;
    bool all_utf8 = true;
    for (Member& member : members) {
        const std::optional<std::string_view> name = plain_name(member);
        member.name = name.value_or(std::string_view());
        if (name) continue;
        all_utf8 = all_utf8 && text::is_utf8(member.raw_name);
        if (sample.size() < most_names_looked_at) sample.push_back(member.raw_name);
    }
    if (sample.empty()) return false;
    if (code_page.empty()) code_page = all_utf8 ? utf8_page : detect_code_page(sample);
    const bool as_in_file = all_utf8 && code_page == utf8_page;
    Converter converter(code_page);
    std::size_t decoded_size = 0;
    for (Member& member : members) {
        if (!member.name.empty() || is_ascii(member.raw_name)) continue;
        member.name = as_in_file ? member.raw_name : name_for_too_many;
        if (as_in_file || decoded_size > most_decoded) continue;
        const std::optional<std::string> name = converter.convert(member.raw_name);
        member.name = decoded.emplace_back(name ? *name : text::to_utf8(member.raw_name));
        decoded_size += member.name.size();
    }
    return true;
}

}  // namespace quill::zip
