#include "integration/favorites.h"

#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/path.h"
#include "text/reader.h"

#include <algorithm>
#include <unistd.h>

namespace quill::integration {
namespace {

constexpr std::string_view extension = ".hyp";
constexpr std::size_t longest_name = 255;

bool is_separator(char c) {
    return c == '/' || c == '\\';
}

/// Turns "!/mail" or "!\my mail" into the directory of that name in the profile.
std::string expand(std::string_view directory, std::string_view profile) {
    if (!directory.starts_with('!')) return std::string(directory);
    std::string below(directory.substr(1));
    std::replace(below.begin(), below.end(), '\\', '/');
    while (below.starts_with('/')) below.erase(0, 1);
    return below.empty() ? std::string(profile) : files::join(profile, below);
}

bool can_be_entered(const std::string& directory) {
    return directory.starts_with('/') && files::is_directory(directory) && access(directory.c_str(), X_OK) == 0;
}

}  // namespace

std::optional<Favorite> parse_favorite(std::string_view contents, std::string_view profile) {
    const auto field = text::Reader(contents).field();
    if (!field) return std::nullopt;
    const std::size_t mark = field->find('^');
    if (mark == std::string_view::npos || mark == 0 || !is_separator((*field)[mark - 1])) return std::nullopt;
    std::string directory = expand(field->substr(0, mark - 1), profile);
    if (directory.size() > 1 && directory.back() == '/') directory.pop_back();
    if (directory.empty()) directory = "/";
    return Favorite{std::string(field->substr(mark + 1)), directory};
}

std::string format_favorite(const Favorite& favorite) {
    const std::string line = favorite.directory + "/^" + favorite.caption;
    const bool needs_quotes = line.find(',') != std::string::npos && line.find('"') == std::string::npos;
    return (needs_quotes ? '"' + line + '"' : line) + "\r\n";
}

std::vector<Favorite> read_favorites(const std::string& dir, std::string_view profile) {
    std::vector<Favorite> favorites;
    const Result<std::vector<std::string>> names = files::list_files(dir, "*.hyp");
    if (!names) return favorites;
    for (const std::string& name : *names) {
        const Result<std::string> contents = files::read_file(files::join(dir, name));
        if (!contents) continue;
        const std::optional<Favorite> favorite = parse_favorite(*contents, profile);
        if (favorite && can_be_entered(favorite->directory)) favorites.push_back(*favorite);
    }
    return favorites;
}

Status write_favorite(const std::string& dir, const Favorite& favorite) {
    const std::string name = favorite.caption + std::string(extension);
    const bool no_name = favorite.caption.empty() || name.size() > longest_name ||
                         name.find_first_of(std::string_view("/\0", 2)) != std::string::npos;
    if (no_name) return Error{ErrorCode::bad_argument, 0, "This can't be the name of a file"};
    Result<files::AtomicFile> file = files::AtomicFile::create(files::join(dir, name));
    if (!file) return file.error();
    file->write(format_favorite(favorite));
    const Result<std::string> published = file->publish(files::OnCollision::replace);
    if (!published) return published.error();
    return Done{};
}

void make_first_favorites(const std::string& dir) {
    const Result<std::vector<std::string>> names = files::list_files(dir, "*.hyp");
    if (!names || !names->empty()) return;
    for (const char* const place : {"Desktop", "Documents", "Downloads", "Mail", "Pictures"}) {
        static_cast<void>(write_favorite(dir, {place, std::string("!/") + place}));
    }
    static_cast<void>(write_favorite(dir, {"Home", "!"}));
}

}  // namespace quill::integration
