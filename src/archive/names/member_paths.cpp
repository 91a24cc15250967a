#include "archive/names/member_paths.h"

#include "files/names.h"

#include <algorithm>

namespace quill::zip {
namespace {

constexpr std::string_view name_for_nothing = "unnamed";
constexpr std::size_t longest_path = 4000;
constexpr std::size_t most_directories = 100;
constexpr std::size_t usual_directories = 65536;  // beyond one for each member
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

/// Puts members into a tree, each under a unique name.
class Placer {
  public:
    Placer(PathTree& tree, std::size_t members) : tree_(tree), directories_left_(usual_directories + members) {}

    PathTree::Id place(std::string_view path, bool is_directory) {
        PathTree::Id at = PathTree::root;
        for (std::size_t slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
            at = enter(at, std::string(path.substr(0, slash)));
            path.remove_prefix(slash + 1);
        }
        const PathTree::Id known = tree_.find(at, path);
        if (known != PathTree::none && is_directory && tree_.is_directory(known)) return known;
        return tree_.add_numbered(at, std::string(path), false, is_directory);
    }

  private:
    /// Stays in `at` if there are too many directories.
    PathTree::Id enter(PathTree::Id at, const std::string& name) {
        if (directories_left_ == 0 && tree_.find(at, name) == PathTree::none) return at;
        const std::size_t before = tree_.size();
        at = tree_.enter(at, name);
        directories_left_ -= std::min(directories_left_, tree_.size() - before);
        return at;
    }

    PathTree& tree_;
    std::size_t directories_left_;
};

std::string_view without_slash_at_end(std::string_view name) {
    return !name.empty() && is_slash(name.back()) ? name.substr(0, name.size() - 1) : name;
}

}  // namespace

std::string safe_path(std::string_view name) {
    std::string path;
    std::size_t directories = 0;
    while (!name.empty()) {
        const auto slash = static_cast<std::size_t>(std::find_if(name.begin(), name.end(), is_slash) - name.begin());
        const std::string part = safe_part(name.substr(0, slash));
        name.remove_prefix(std::min(slash + 1, name.size()));
        if (part.empty()) continue;
        // If it gets too deep or too long, the part before is dropped.
        const bool fits = directories < most_directories && path.size() + part.size() < longest_path;
        if (!fits) path.resize(path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
        if (fits && !path.empty()) ++directories;
        if (!path.empty()) path += '/';
        path += part;
    }
    return path;
}

MemberPaths::MemberPaths(const std::vector<Member>& members) : tree_(members.size()) {
    ids_.reserve(members.size());
    renamed_.reserve(members.size());
    Placer placer(tree_, members.size());
    for (const Member& member : members) {
        std::string path = safe_path(member.name);
        if (path.empty()) path = name_for_nothing;
        ids_.push_back(placer.place(path, member.is_directory()));
        renamed_.push_back(tree_.path(ids_.back()) != without_slash_at_end(member.name));
    }
    tree_.forget_names_index();
}

}  // namespace quill::zip
