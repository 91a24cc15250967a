#include "zip/tree_walk.h"

#include "files/directory.h"
#include "files/path.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace quill::zip {
namespace fs = std::filesystem;

namespace {

std::time_t time_of(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? status.st_mtime : 0;
}

EntryKind kind_of(const std::string& path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0) return EntryKind::file;
    if (S_ISLNK(status.st_mode)) return EntryKind::link;
    return S_ISDIR(status.st_mode) ? EntryKind::directory : EntryKind::file;
}

}  // namespace

std::string member_name_of(std::string_view path) {
    std::string name;
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, slash);
        path.remove_prefix(std::min(slash + 1, path.size()));
        if (part.empty() || part == "." || part == "..") continue;
        if (!name.empty()) name += '/';
        name += part;
    }
    return name;
}

std::vector<TreeEntry> walk_tree(const std::string& path) {
    if (!files::is_directory(path)) return {{path, member_name_of(path), EntryKind::file, 0}};
    std::vector<std::string> paths{path};
    std::error_code failure;
    for (fs::recursive_directory_iterator entry(path, fs::directory_options::skip_permission_denied, failure), end;
         !failure && entry != end; entry.increment(failure)) {
        paths.push_back(entry->path());
    }
    std::sort(paths.begin(), paths.end());
    std::vector<TreeEntry> entries;
    for (const std::string& found : paths) {
        TreeEntry entry{found, member_name_of(found), found == path ? EntryKind::directory : kind_of(found), 0};
        if (entry.kind == EntryKind::directory) entry.modified = time_of(found);
        if (!entry.member_name.empty()) entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace quill::zip
