#include "archive/changing/tree_walk.h"

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

EntryKind kind_behind(const std::string& path) {
    return files::is_directory(path) ? EntryKind::directory : EntryKind::file;
}

/// Appends the entries of the directory `entries[at]`, or stores there why it can't be read.
void add_entries_of(std::size_t at, std::vector<TreeEntry>& entries) {
    const std::string path = entries[at].path;
    entries[at].modified = time_of(path);
    std::error_code failure;
    fs::directory_iterator entry(path, failure);
    for (const fs::directory_iterator end; !failure && entry != end; entry.increment(failure)) {
        const std::string found = entry->path();
        entries.push_back({found, member_name_of(found), kind_of(found), 0});
    }
    if (failure) entries[at].unreadable = system_error(failure.value());
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

std::vector<TreeEntry> walk_tree(const std::string& path, NamedLink named) {
    const EntryKind kind = named == NamedLink::kept ? kind_of(path) : kind_behind(path);
    if (kind != EntryKind::directory) return {{path, member_name_of(path), kind, 0}};
    std::vector<TreeEntry> entries{{path, member_name_of(path), EntryKind::directory, 0}};
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].kind == EntryKind::directory) add_entries_of(i, entries);
    }
    // A directory without its own name is kept only if it could not be read.
    std::erase_if(entries, [](const TreeEntry& entry) { return entry.member_name.empty() && !entry.unreadable; });
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    return entries;
}

}  // namespace quill::zip
