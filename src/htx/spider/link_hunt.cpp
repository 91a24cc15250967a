#include "htx/spider/link_hunt.h"

#include "files/directory.h"
#include "files/mapped_file.h"
#include "htx/html/page_text.h"
#include "htx/html/references.h"
#include "text/ascii.h"

#include <set>
#include <unordered_set>

namespace quill::htx {
namespace {

/// Returns the addresses in a text of the kind, with their base.
PageReferences references_of(FileKind kind, std::string_view text) {
    return kind == FileKind::style ? PageReferences{{}, references_of_style(text)} : references_of_page(text);
}

}  // namespace

FileKind kind_of(std::string_view name) {
    const std::string end = text::to_lower(text::last(name, 4));
    if (end.ends_with("htm") || end.ends_with("tml")) return FileKind::page;
    if (end == ".css") return FileKind::style;
    return FileKind::other;
}

std::vector<std::string> files_named_in(SiteFiles& site, const std::string& file) {
    std::vector<std::string> found;
    const FileKind kind = kind_of(file);
    if (kind == FileKind::other) return found;
    const Result<files::MappedFile> bytes = files::MappedFile::open(site.path_of(file));
    if (!bytes) return found;
    std::unordered_set<std::string> seen;
    const PageReferences page = references_of(kind, decode_page(bytes->bytes()));
    for (const Reference& reference : page.references) {
        std::optional<std::string> named = site.find(resolve(file, page.base, reference.address));
        if (named && seen.insert(*named).second) found.push_back(std::move(*named));
    }
    return found;
}

Hunt hunt_links(SiteFiles& site, const std::vector<std::string>& start, const HuntWatch& watch,
                std::size_t most_files) {
    Hunt hunt;
    std::unordered_set<std::string> known;
    std::set<files::Identity> read;  // a page reached by two names is read once
    const auto add = [&](const std::string& file) {
        if (!known.insert(file).second) return true;
        if (hunt.files.size() == most_files) return false;
        hunt.files.push_back(file);
        return true;
    };
    for (const std::string& file : start) {
        if (!add(file)) return {std::move(hunt.files), HuntEnd::too_many};
    }
    for (std::size_t next = 0; next < hunt.files.size(); ++next) {
        const std::string file = hunt.files[next];
        const auto identity = files::identity_of(site.path_of(file));
        if (identity && !read.insert(*identity).second) continue;
        for (const std::string& named : files_named_in(site, file)) {
            if (!add(named)) return {std::move(hunt.files), HuntEnd::too_many};
        }
        if (watch && !watch(hunt.files.size())) return {std::move(hunt.files), HuntEnd::stopped};
    }
    return hunt;
}

}  // namespace quill::htx
