#include "files/mounts.h"

#include "files/path.h"
#include "text/reader.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

namespace quill::files {
namespace {

bool is_below(std::string_view path, std::string_view dir) {
    return is_root(dir) || path == dir || (path.starts_with(dir) && path[dir.size()] == '/');
}

bool is_for_people(std::string_view mount_point) {
    static constexpr std::array<std::string_view, 4> places = {"/media", "/run/media", "/mnt", "/home"};
    return std::any_of(places.begin(), places.end(),
                       [&](std::string_view place) { return is_below(mount_point, place); });
}

/// Decodes the escapes of proc(5): blanks, tabs, line feeds and backslashes are a backslash and three octal digits.
std::string unescape(std::string_view field) {
    std::string out;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size()) {
            out += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0'));
            i += 3;
        } else {
            out += field[i];
        }
    }
    return out;
}

}  // namespace

std::vector<std::string> drives_among(std::string_view mounts) {
    std::vector<std::string> found = {"/"};
    text::Reader reader(mounts);
    while (const auto line = reader.line()) {
        const std::size_t begin = line->find(' ');
        if (begin == std::string_view::npos) continue;
        const std::string_view rest = line->substr(begin + 1);
        std::string mount_point = unescape(rest.substr(0, rest.find(' ')));
        if (is_for_people(mount_point)) found.push_back(std::move(mount_point));
    }
    std::sort(found.begin() + 1, found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

std::vector<std::string> drives() {
    std::ifstream mounts("/proc/self/mounts", std::ios::binary);
    return drives_among(std::string(std::istreambuf_iterator<char>(mounts), {}));
}

std::string drive_of(std::string_view path, const std::vector<std::string>& drives) {
    std::string longest = "/";
    for (const std::string& drive : drives) {
        if (is_below(path, drive) && drive.size() > longest.size()) longest = drive;
    }
    return longest;
}

}  // namespace quill::files
