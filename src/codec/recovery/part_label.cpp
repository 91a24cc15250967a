#include "codec/recovery/part_label.h"

#include "files/path.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace quill::codec {
namespace {

constexpr std::size_t longest_label = 200;
constexpr std::uint32_t most_parts = 100'000;

std::string_view skip(std::string_view s, std::string_view any_of) {
    const std::size_t at = s.find_first_not_of(any_of);
    return at == std::string_view::npos ? std::string_view() : s.substr(at);
}

/// Removes a number from the front of `s` and returns it; 0 if there is none, or it is unreasonably large.
std::uint32_t take_number(std::string_view& s) {
    std::uint32_t n = 0;
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), n);
    if (error != std::errc()) return 0;
    s.remove_prefix(static_cast<std::size_t>(end - s.data()));
    return n > most_parts ? 0 : n;
}

/// Removes "2/5", "2 of 5", "2of5" or "2" from the front of `s` and returns its numbers. `slash` is written for "/".
PartLabel take_numbers(std::string_view& s, char slash = '/') {
    PartLabel label;
    label.number = take_number(s);
    std::string_view rest = skip(s, " \t");
    if (label.number == 0 || rest.empty()) return label;
    const bool of = text::starts_with_ignoring_case(rest, "of");
    if (!of && !rest.starts_with(slash)) return label;
    rest = skip(rest.substr(of ? 2 : 1), " \t");
    const std::uint32_t total = take_number(rest);
    if (total < label.number) return label;
    label.total = total;
    s = rest;
    return label;
}

/// Returns the file's name after "file" in the text after the numbers.
std::string file_behind(std::string_view s) {
    const std::string lower = text::to_lower(s);
    std::size_t at = lower.find("file ");
    if (at == std::string::npos) at = lower.find("file:");
    if (at == std::string::npos) return {};
    std::string_view name = skip(s.substr(at + 5), " \t");
    for (const std::string_view end : {"  ", "\t", " ]"}) name = name.substr(0, name.find(end));
    if (const std::size_t by = name.find(" by "); by != std::string_view::npos) name = name.substr(0, by);
    return std::string(text::trim(name));
}

constexpr std::array<std::string_view, 2> words = {"part", "section"};
constexpr std::array<std::string_view, 6> prefixes = {"re:", "fw:", "fwd:", "aw:", "repost:", "repost "};
constexpr std::string_view between = " \t([-#,:";  ///< a name and its numbers

bool remove_word(std::string_view& text) {
    for (const std::string_view word : words) {
        if (!text::ends_with_ignoring_case(text, word)) continue;
        text.remove_suffix(word.size());
        return true;
    }
    return false;
}

void remove_end(std::string_view& text) {
    text = text.substr(0, text.find_last_not_of(between) + 1);
}

bool remove_prefix(std::string_view& text) {
    text = skip(text, " \t");
    for (const std::string_view prefix : prefixes) {
        if (!text::starts_with_ignoring_case(text, prefix)) continue;
        text.remove_prefix(prefix.size());
        return true;
    }
    return false;
}

/// Returns the name in the text before the numbers of a subject: without "Re:" and "part", and only what is between
/// quotes if that is a file's name.
std::string name_before(std::string_view before) {
    while (remove_prefix(before)) {
    }
    remove_end(before);
    if (remove_word(before)) remove_end(before);
    const std::size_t open = before.find('"');
    const std::size_t close = before.rfind('"');
    if (open != std::string_view::npos && close > open + 1) {
        const std::string_view quoted = before.substr(open + 1, close - open - 1);
        if (quoted.find('.') != std::string_view::npos) before = quoted;
    }
    return std::string(text::trim(before));
}

/// Returns the name after the numbers in a subject that begins with them: "(2/3) x.zip".
std::string name_after(std::string_view rest) {
    const std::string_view name = skip(rest, " \t)]-:");
    return std::string(text::trim(name));
}

/// Returns the label of a subject with "part 3", or with "#3" at its end, that states no total.
std::optional<PartLabel> label_of_word(std::string_view before, std::uint32_t number, std::string_view after) {
    before = text::trim(before);
    const bool counted = before.ends_with('#') && skip(after, " \t)]").empty();
    if (!counted && !remove_word(before)) return std::nullopt;
    PartLabel label{name_before(before), number, 0};
    if (label.file.empty()) return std::nullopt;
    return label;
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

/// Returns how clearly "2/5" numbers a part; 0 if it is of a date or a longer row of numbers. Numbers of one part mean
/// less than others, and those between brackets more.
unsigned clarity(std::string_view before, const PartLabel& label, std::string_view after) {
    const bool goes_on = after.size() > 1 && after.front() == '/' && is_digit(after[1]);
    const bool has_begun = before.size() > 1 && before.back() == '/' && is_digit(before[before.size() - 2]);
    if (goes_on || has_begun || label.total == 0) return 0;
    after = skip(after, " \t");
    before = before.substr(0, before.find_last_not_of(" \t") + 1);
    const bool worded = remove_word(before);
    before = before.substr(0, before.find_last_not_of(" \t") + 1);
    const bool opened = before.ends_with('(') || before.ends_with('[');
    const bool closed = after.starts_with(')') || after.starts_with(']');
    return 1 + (worded || (opened && closed) ? 1U : 0U) + (label.total > 1 ? 2U : 0U);
}

/// Returns true if `line` reads as words: it begins with one, and one follows the numbers, before `rest`.
bool is_sentence(std::string_view line, std::string_view rest) {
    const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    rest = skip(rest, " \t,.");
    return is_letter(line.front()) && !rest.empty() && is_letter(rest.front());
}

}  // namespace

std::optional<PartLabel> read_part_label(std::string_view line) {
    if (line.size() < 6 || line.size() > longest_label) return std::nullopt;
    if (std::string_view("_[-=sSpP*").find(line.front()) == std::string_view::npos) return std::nullopt;
    const std::string lower = text::to_lower(line);
    for (const std::string_view word : words) {
        const std::size_t at = lower.find(word);
        if (at == std::string::npos || at > 16 || lower.substr(0, at).ends_with("end of ")) continue;
        std::string_view rest = skip(line.substr(at + word.size()), " \t:=#");
        PartLabel label = take_numbers(rest);
        if (label.number == 0) continue;
        label.file = file_behind(rest);
        if (label.file.empty() && (label.total == 0 || is_sentence(line, rest))) continue;
        return label;
    }
    return std::nullopt;
}

std::optional<PartLabel> label_of_subject(std::string_view subject) {
    subject = subject.substr(0, 4 * longest_label);
    std::optional<PartLabel> found;
    unsigned clearest = 0;
    for (std::size_t at = 0; at < subject.size(); ++at) {
        if (!is_digit(subject[at])) continue;
        const std::string_view before = subject.substr(0, at);
        std::string_view rest = subject.substr(at);
        PartLabel label = take_numbers(rest);
        const unsigned clear = clarity(before, label, rest);
        if (clear > 0 && clear >= clearest) {
            clearest = clear;
            label.file = name_before(before);
            if (label.file.empty()) label.file = name_after(rest);
            found = std::move(label);
        } else if (label.number > 0 && !found) {
            found = label_of_word(before, label.number, rest);
        }
        while (at + 1 < subject.size() && is_digit(subject[at + 1])) ++at;
    }
    return found;
}

namespace {

/// Returns the name without what file managers add to a copy's: "copy of x.001", "x (copy).001", "x - Copy.001".
std::string without_copy_mark(std::string name) {
    for (const std::string_view mark : {"copy of ", " (copy)", " - copy"}) {
        const std::size_t at = text::to_lower(name).find(mark);
        if (at != std::string::npos) return name.erase(at, mark.size());
    }
    return name;
}

/// Returns the numbers of a name with "2of5", "(2_5)" or "[2-5]" in it, and as `file` the name without them.
PartLabel label_with_total(std::string_view name) {
    for (std::size_t at = 0; at < name.size(); ++at) {
        if (!is_digit(name[at]) || (at > 0 && is_digit(name[at - 1]))) continue;
        const bool opened = at > 0 && (name[at - 1] == '(' || name[at - 1] == '[');
        for (const char slash : {'_', '-'}) {
            std::string_view rest = name.substr(at);
            PartLabel label = take_numbers(rest, slash);
            const std::string_view numbers = name.substr(at, name.size() - at - rest.size());
            const bool of = text::to_lower(numbers).find("of") != std::string::npos;
            const bool closed = rest.starts_with(')') || rest.starts_with(']');
            if (label.total < 2 || !(of || (opened && closed))) continue;
            label.file = std::string(name.substr(0, at)) + '\n' + std::string(rest);
            return label;
        }
    }
    return {};
}

}  // namespace

PartLabel label_of_path(const std::string& path) {
    constexpr std::size_t most_digits = 5;
    const std::string name = without_copy_mark(files::name_of(path));
    const std::string directory = path.substr(0, path.size() - files::name_of(path).size());
    if (PartLabel stated = label_with_total(name); stated.total > 0) {
        stated.file.insert(0, directory);
        return stated;
    }
    const std::size_t last = name.find_last_of("0123456789");
    PartLabel label;
    if (last == std::string::npos) return label;
    std::size_t first = name.find_last_not_of("0123456789", last);
    first = first == std::string::npos ? 0 : first + 1;
    if (last + 1 - first > most_digits) return label;
    label.number = static_cast<std::uint32_t>(std::stoul(name.substr(first, last + 1 - first)));
    label.file = directory + name.substr(0, first) + '\n' + name.substr(last + 1);
    return label;
}

std::uint32_t part_of_path(const std::string& path) {
    const PartLabel label = label_of_path(path);
    const std::string name = files::name_of(path);
    const std::string_view extension = std::string_view(name).substr(files::extension_at(name));
    const bool numbered = extension.size() == 4 && std::all_of(extension.begin() + 1, extension.end(), is_digit);
    return label.total > 0 || numbered ? label.number : 0;
}

}  // namespace quill::codec
