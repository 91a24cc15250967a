#include "codec/recovery/part_label.h"

#include "files/path.h"
#include "text/ascii.h"

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

/// Removes "2/5", "2 of 5" or "2" from the front of `s` and returns its numbers.
PartLabel take_numbers(std::string_view& s) {
    PartLabel label;
    label.number = take_number(s);
    std::string_view rest = skip(s, " \t");
    if (label.number == 0 || rest.empty()) return label;
    const bool of = text::starts_with_ignoring_case(rest, "of ");
    if (!of && !rest.starts_with('/')) return label;
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

/// Returns the name after the numbers in a subject that begins with them: "(2/3) x.zip".
std::string name_after(std::string_view rest) {
    const std::string_view name = skip(rest, " \t)]-:");
    return std::string(text::trim(name));
}

/// Returns the label of a subject that ends in "part 3" and states no total.
std::optional<PartLabel> label_of_word(std::string_view before, std::uint32_t number) {
    before = text::trim(before);
    for (const std::string_view word : words) {
        if (!text::ends_with_ignoring_case(before, word)) continue;
        before.remove_suffix(word.size());
        const std::size_t end = before.find_last_not_of(" \t([-,:");
        if (end == std::string_view::npos) return std::nullopt;
        return PartLabel{std::string(before.substr(0, end + 1)), number, 0};
    }
    return std::nullopt;
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
        if (label.total == 0 && label.file.empty()) continue;
        return label;
    }
    return std::nullopt;
}

std::optional<PartLabel> label_of_subject(std::string_view subject) {
    subject = subject.substr(0, 4 * longest_label);
    std::optional<PartLabel> found;
    for (std::size_t at = 0; at < subject.size(); ++at) {
        const bool digit = subject[at] >= '0' && subject[at] <= '9';
        if (!digit) continue;
        std::string_view rest = subject.substr(at);
        PartLabel label = take_numbers(rest);
        if (label.number > 0 && label.total > 0) {
            const std::string_view before = subject.substr(0, at);
            label.file = before.substr(0, before.find_last_not_of(" \t([-") + 1);
            for (const std::string_view word : words) {
                if (text::ends_with_ignoring_case(label.file, word)) label.file.resize(label.file.size() - word.size());
            }
            label.file = text::trim(label.file);
            if (label.file.empty()) label.file = name_after(rest);
            found = std::move(label);
        } else if (label.number > 0 && !found) {
            found = label_of_word(subject.substr(0, at), label.number);
        }
        while (at + 1 < subject.size() && subject[at + 1] >= '0' && subject[at + 1] <= '9') ++at;
    }
    return found;
}

PartLabel label_of_path(const std::string& path) {
    constexpr std::size_t most_digits = 5;
    const std::string name = files::name_of(path);
    const std::size_t last = name.find_last_of("0123456789");
    PartLabel label;
    if (last == std::string::npos) return label;
    std::size_t first = name.find_last_not_of("0123456789", last);
    first = first == std::string::npos ? 0 : first + 1;
    if (last + 1 - first > most_digits) return label;
    label.number = static_cast<std::uint32_t>(std::stoul(name.substr(first, last + 1 - first)));
    label.file = path.substr(0, path.size() - name.size()) + name.substr(0, first) + '\n' + name.substr(last + 1);
    return label;
}

}  // namespace quill::codec
