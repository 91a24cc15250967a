#include "htx/spider/site_files.h"

#include "files/directory.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <utility>

namespace quill::htx {

std::string name_key(std::string_view name) {
    return text::to_lower(text::to_utf8(name));
}

SiteFiles::SiteFiles(const std::string& root) : root_(root), real_root_(files::join(files::resolved(root), "")) {}

std::string SiteFiles::path_of(std::string_view file) const {
    return files::join(root_, file);
}

bool SiteFiles::is_inside(const std::string& file) const {
    const std::string path = path_of(file);
    return files::file_size(path) && files::resolved(path).starts_with(real_root_);
}

std::optional<std::string> SiteFiles::find(const Address& address) {
    if (address.kind != AddressKind::local || address.path.empty()) return std::nullopt;
    for (const std::string& path : {address.path, address.written_path}) {
        if (is_inside(path)) return path;
    }
    std::optional<std::string> alike = find_alike(address.path);
    return alike && is_inside(*alike) ? alike : std::nullopt;
}

std::optional<std::string> SiteFiles::find_alike(const std::string& path) {
    std::string found;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const auto& names = names_in(found);
        const auto name = names.find(name_key(std::string_view(path).substr(begin, end - begin)));
        if (name == names.end()) return std::nullopt;
        found = files::join(found, name->second);
        begin = end + 1;
    }
    return found;
}

const std::unordered_map<std::string, std::string>& SiteFiles::names_in(const std::string& directory) {
    const auto [listing, is_new] = listings_.try_emplace(directory);
    if (!is_new) return listing->second;
    const std::string path = directory.empty() ? root_ : path_of(directory);
    for (const auto& list : {files::list_files(path), files::list_directories(path)}) {
        if (!list) continue;
        for (const std::string& name : *list) listing->second.try_emplace(name_key(name), name);
    }
    return listing->second;
}

}  // namespace quill::htx
