#include "files/names.h"

#include "files/directory.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/printable.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>

namespace quill::files {
namespace {

constexpr std::size_t longest_name = 255;  // bytes; the limit of ext4, XFS, Btrfs and most others

/// Returns true for characters that only change how a name reads: they can make "gpj.exe" look like "exe.jpg", or two
/// names look alike.
bool is_invisible(char32_t c) {
    return text::is_display_control(c) || (c >= 0x200B && c <= 0x200D);
}

/// Returns true for characters that other systems do not allow in a name; they become '_'.
bool is_forbidden_elsewhere(char32_t c) {
    return c < 0x80 && std::string_view("<>:\"|?*").find(static_cast<char>(c)) != std::string_view::npos;
}

/// Returns true for names that Windows reserves for devices, with any extension.
bool is_device_name(std::string_view name) {
    static constexpr std::array<std::string_view, 4> devices = {"con", "prn", "aux", "nul"};
    const std::string stem = text::to_lower(text::trim(name.substr(0, name.find('.'))));
    if (std::find(devices.begin(), devices.end(), stem) != devices.end()) return true;
    return stem.size() == 4 && (stem.starts_with("com") || stem.starts_with("lpt")) && stem[3] >= '1' && stem[3] <= '9';
}

std::string_view without_directory(std::string_view name) {
    const std::size_t cut = name.find_last_of("/\\");
    if (cut != std::string_view::npos) name.remove_prefix(cut + 1);
    const bool drive = name.size() >= 2 && name[1] == ':' && text::lower(name[0]) >= 'a' && text::lower(name[0]) <= 'z';
    return drive ? name.substr(2) : name;
}

std::string readable_characters(std::string_view utf8) {
    std::string out;
    while (!utf8.empty()) {
        const char32_t c = text::next_character(utf8);
        if (is_invisible(c)) continue;
        text::append_utf8(out, is_forbidden_elsewhere(c) ? U'_' : c);
    }
    return out;
}

std::string strip_ends(std::string_view name) {
    const std::size_t first = name.find_first_not_of(".- ");
    if (first == std::string_view::npos) return {};
    return std::string(name.substr(first, name.find_last_not_of(". ") - first + 1));
}

/// Returns the longest beginning of `utf8` of at most `bytes` bytes that does not cut a character.
std::string_view cut_at_character(std::string_view utf8, std::size_t bytes) {
    if (utf8.size() <= bytes) return utf8;
    while (bytes > 0 && (static_cast<unsigned char>(utf8[bytes]) & 0xC0U) == 0x80U) --bytes;
    return utf8.substr(0, bytes);
}

/// Returns `stem` + `tail`, with the stem cut so that both fit in a name.
std::string fit(std::string_view stem, std::string_view tail) {
    if (tail.size() >= longest_name) return std::string(cut_at_character(std::string(stem).append(tail), longest_name));
    return std::string(cut_at_character(stem, longest_name - tail.size())).append(tail);
}

/// Matches a pattern with `*` and `?`: backtracks only to the last star, so the time is at most length times length.
bool matches_one(std::string_view name, std::string_view pattern) {
    std::size_t n = 0, p = 0, star = std::string_view::npos, star_name = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            star_name = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || text::lower(pattern[p]) == text::lower(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++star_name;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

}  // namespace

std::string safe_name(std::string_view hostile) {
    const std::string utf8 = text::to_utf8(hostile);
    std::string name = strip_ends(readable_characters(without_directory(utf8)));
    if (is_device_name(name)) name.insert(0, "_");
    const std::size_t extension = extension_at(name);
    return fit(std::string_view(name).substr(0, extension), std::string_view(name).substr(extension));
}

std::string numbered_name(const std::string& name, unsigned n) {
    if (n <= 1) return name;
    const std::size_t extension = extension_at(name);
    const std::string number = " (" + std::to_string(n) + ")";
    return fit(std::string_view(name).substr(0, extension), number + name.substr(extension));
}

std::string unique_name(const std::string& dir, const std::string& name) {
    unsigned n = 1;
    while (exists(join(dir, numbered_name(name, n)))) ++n;
    return numbered_name(name, n);
}

std::optional<std::string> find_name(const std::string& dir, std::string_view name) {
    if (name.find('/') == std::string_view::npos && exists(join(dir, name))) return std::string(name);
    const Result<std::vector<std::string>> files = list_files(dir);
    if (!files) return std::nullopt;
    const auto found = std::find_if(files->begin(), files->end(),
                                    [&](const std::string& entry) { return text::equal_ignoring_case(entry, name); });
    if (found == files->end()) return std::nullopt;
    return *found;
}

bool matches(std::string_view name, std::string_view patterns) {
    while (true) {
        const std::size_t end = patterns.find(';');
        const std::string_view pattern = text::trim(patterns.substr(0, end));
        if (pattern == "*.*" || matches_one(name, pattern)) return true;
        if (end == std::string_view::npos) return false;
        patterns.remove_prefix(end + 1);
    }
}

}  // namespace quill::files
