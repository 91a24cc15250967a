#include "zip/member_paths.h"

#include "files/names.h"
#include "files/path.h"
#include "text/ascii.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace quill::zip {
namespace {

constexpr std::string_view name_for_nothing = "unnamed";
constexpr std::size_t longest_path = 4000;
constexpr std::size_t longest_part = 255;

bool is_slash(char c) {
    return c == '/' || c == '\\';
}

std::string safe_part(std::string_view part) {
    if (part == "." || part == "..") return {};
    const std::size_t dots = std::min(part.find_first_not_of('.'), part.size());
    const std::string rest = files::safe_name(part.substr(dots));
    if (rest.empty()) return {};
    // A member may be a hidden file.
    return rest.size() + dots <= longest_part ? std::string(dots, '.') + rest : rest;
}

/// Paths already given, in lower case, and whether a directory is meant.
class Taken {
  public:
    /// Makes `path` one that nobody has, and takes it and the directories that lead to it.
    std::string take(std::string path, bool directory) {
        path = free_directories(std::move(path));
        const auto known = taken_.find(text::to_lower(path));
        if (known == taken_.end() || (directory && known->second)) {
            taken_[text::to_lower(path)] = directory;
            return path;
        }
        const std::string dir = files::dir_of(path), name = files::name_of(path);
        unsigned& number = numbers_[text::to_lower(path)];
        number = std::max(number, 1U);
        std::string numbered;
        do {
            numbered = files::join(dir, files::numbered_name(name, ++number));
        } while (taken_.count(text::to_lower(numbered)) != 0);
        taken_[text::to_lower(numbered)] = directory;
        return numbered;
    }

  private:
    /// Gives a directory of `path` another name where a file has its name.
    std::string free_directories(std::string path) {
        const std::size_t last = path.rfind('/');
        if (last == std::string::npos || path.compare(0, last, last_directory_) == 0) return path;
        for (std::size_t slash = path.find('/'); slash != std::string::npos; slash = path.find('/', slash + 1)) {
            const std::string dir = path.substr(0, slash);
            const auto known = taken_.find(text::to_lower(dir));
            if (known == taken_.end()) {
                taken_[text::to_lower(dir)] = true;
            } else if (!known->second) {
                unsigned number = 2;
                const std::string parent = files::dir_of(dir), name = files::name_of(dir);
                const auto candidate = [&] { return files::join(parent, files::numbered_name(name, number)); };
                while (is_file(candidate())) ++number;
                const std::string other = candidate();
                path.replace(0, slash, other);
                slash = other.size();
                taken_[text::to_lower(other)] = true;
            }
        }
        last_directory_ = path.substr(0, path.rfind('/'));
        return path;
    }

    bool is_file(const std::string& path) const {
        const auto known = taken_.find(text::to_lower(path));
        return known != taken_.end() && !known->second;
    }

    std::unordered_map<std::string, bool> taken_;
    std::unordered_map<std::string, unsigned> numbers_;
    std::string last_directory_;
};

std::string without_slash_at_end(const std::string& name) {
    return !name.empty() && is_slash(name.back()) ? name.substr(0, name.size() - 1) : name;
}

}  // namespace

std::string safe_path(std::string_view name) {
    std::string path;
    while (!name.empty()) {
        const auto slash = static_cast<std::size_t>(std::find_if(name.begin(), name.end(), is_slash) - name.begin());
        const std::string part = safe_part(name.substr(0, slash));
        name.remove_prefix(std::min(slash + 1, name.size()));
        if (part.empty() || path.size() + part.size() > longest_path) continue;
        if (!path.empty()) path += '/';
        path += part;
    }
    return path;
}

std::vector<MemberPath> member_paths(const std::vector<Member>& members) {
    std::vector<MemberPath> paths;
    paths.reserve(members.size());
    Taken taken;
    for (const Member& member : members) {
        std::string path = safe_path(member.name);
        if (path.empty()) path = name_for_nothing;
        path = taken.take(std::move(path), member.is_directory());
        const bool renamed = path != without_slash_at_end(member.name);
        paths.push_back({std::move(path), renamed});
    }
    return paths;
}

}  // namespace quill::zip
