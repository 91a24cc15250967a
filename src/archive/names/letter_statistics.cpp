#include "archive/names/letter_statistics.h"

#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace quill::zip {
namespace {

struct LetterRow {
    char32_t letter;  // lower case
    double in_1000;   // of all letters that are not ASCII
};

/// Russian prose.
constexpr std::array<LetterRow, 33> russian_letters{{
    {U'\u0430', 80}, {U'\u0431', 16}, {U'\u0432', 45}, {U'\u0433', 17},  {U'\u0434', 30}, {U'\u0435', 85},
    {U'\u0451', 1},  {U'\u0436', 9},  {U'\u0437', 16}, {U'\u0438', 74},  {U'\u0439', 12}, {U'\u043A', 35},
    {U'\u043B', 44}, {U'\u043C', 32}, {U'\u043D', 67}, {U'\u043E', 110}, {U'\u043F', 28}, {U'\u0440', 47},
    {U'\u0441', 55}, {U'\u0442', 63}, {U'\u0443', 26}, {U'\u0444', 3},   {U'\u0445', 10}, {U'\u0446', 5},
    {U'\u0447', 14}, {U'\u0448', 7},  {U'\u0449', 4},  {U'\u044A', 1},   {U'\u044B', 19}, {U'\u044C', 17},
    {U'\u044D', 3},  {U'\u044E', 6},  {U'\u044F', 20},
}};

/// The accented letters of CP437, over German, French, Spanish, Portuguese, Italian and Nordic prose.
constexpr std::array<LetterRow, 28> western_letters{{
    {U'\u00E9', 270}, {U'\u00FC', 110}, {U'\u00E4', 110}, {U'\u00F6', 80},  {U'\u00E5', 60}, {U'\u00E0', 60},
    {U'\u00E8', 50},  {U'\u00F3', 50},  {U'\u00ED', 45},  {U'\u00E1', 45},  {U'\u00DF', 30}, {U'\u00E7', 30},
    {U'\u00F1', 25},  {U'\u00EA', 20},  {U'\u00FA', 15},  {U'\u00E6', 10},  {U'\u00F4', 8},  {U'\u00E2', 8},
    {U'\u00EE', 6},   {U'\u00FB', 5},   {U'\u00F9', 5},   {U'\u00F2', 5},   {U'\u00EB', 4},  {U'\u00EF', 4},
    {U'\u00EC', 3},   {U'\u00FF', 0.5}, {U'\u00AA', 0.5}, {U'\u00BA', 0.5},
}};

/// The share of letters that are not ASCII.
constexpr double others_in_russian = 0.9, others_in_western = 0.08;
constexpr double capital = 0.1;         // of all letters, in places where a lower-case one is possible
constexpr double anything_else = 1e-4;  // symbols, and letters of other languages

char32_t small_letter(char32_t c) {
    const bool is_capital = (c >= 0xC0 && c <= 0xDE) || (c >= 0x0410 && c <= 0x042F);
    return is_capital ? c + 0x20 : c;
}

template <class Rows>
double share(const Rows& rows, char32_t c) {
    const char32_t small = small_letter(c);
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const LetterRow& r) { return r.letter == small; });
    if (row == rows.end()) return anything_else;
    return row->in_1000 / 1000 * (small == c ? 1 : capital);
}

}  // namespace

double likelihood(std::string_view utf8, Reading reading) {
    const double others = reading == Reading::russian ? others_in_russian : others_in_western;
    std::string_view rest = utf8.substr(0, utf8.rfind('.') == 0 ? utf8.npos : utf8.rfind('.'));
    double sum = 0;
    bool all_capitals = true;
    while (!rest.empty()) {
        const char32_t c = text::next_character(rest);
        const bool is_ascii_letter = (c | 0x20U) >= U'a' && (c | 0x20U) <= U'z';
        if (is_ascii_letter) sum += std::log2(1 - others);
        if (c < 0x80) continue;
        all_capitals = all_capitals && small_letter(c) != c;
        sum +=
            std::log2(others * (reading == Reading::russian ? share(russian_letters, c) : share(western_letters, c)));
        // At the beginning of a name, and in names all in capitals, a capital is as usual as a small letter.
        if (small_letter(c) != c && all_capitals) sum -= std::log2(capital);
    }
    return sum;
}

}  // namespace quill::zip
