#include "htx/book/book_pages.h"

#include "htx/html/html_reader.h"
#include "htx/spider/site_files.h"
#include "text/ascii.h"
#include "text/reader.h"

#include <algorithm>

namespace quill::htx {
namespace {

/// Returns the position of the first `key`, given in lower case, in `line`, ignoring case.
std::size_t find_ignoring_case(std::string_view line, std::string_view key) {
    return text::to_lower(line).find(key);
}

}  // namespace

void sort_as_pages(std::vector<std::string>& paths) {
    std::vector<std::pair<std::string, std::string>> keyed;
    for (std::string& path : paths) keyed.emplace_back(text::to_lower(path), std::move(path));
    std::sort(keyed.begin(), keyed.end());
    for (std::size_t i = 0; i < paths.size(); ++i) paths[i] = std::move(keyed[i].second);
}

std::string contents_title(std::string_view page) {
    constexpr int lines_read = 11;
    constexpr std::string_view tag = "<title>";
    std::vector<std::string_view> lines;
    text::Reader reader{text::Source(page)};
    while (lines.size() < lines_read) {
        const auto line = reader.line();
        if (!line) break;
        lines.push_back(*line);
    }
    std::string_view title;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::size_t at = find_ignoring_case(lines[i], tag);
        if (at == std::string_view::npos) continue;
        const std::string_view rest = lines[i].substr(at + tag.size());
        const std::string_view next = i + 1 < lines.size() ? lines[i + 1] : std::string_view();
        title = rest.empty() ? next : rest.substr(0, rest.find('<'));
    }
    return decode_references(title);
}

BookFiles::BookFiles(const std::vector<std::string>& paths) {
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (paths[i].empty()) continue;
        by_path_.try_emplace(paths[i], i);
        by_key_.try_emplace(name_key(paths[i]), i);
    }
}

std::optional<std::size_t> BookFiles::find(const Address& address) const {
    if (address.kind != AddressKind::local) return std::nullopt;
    for (const std::string& path : {address.path, address.written_path}) {
        const auto found = by_path_.find(path);
        if (found != by_path_.end()) return found->second;
    }
    const auto alike = by_key_.find(name_key(address.path));
    return alike != by_key_.end() ? std::optional(alike->second) : std::nullopt;
}

}  // namespace quill::htx
