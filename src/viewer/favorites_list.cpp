#include "viewer/favorites_list.h"

#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/reader.h"

#include <algorithm>
#include <utility>

namespace quill::viewer {
namespace {

/// A line and the bytes that end it.
struct Line {
    std::string_view text;
    std::string_view whole;
};

std::vector<Line> lines_of(std::string_view bytes) {
    std::vector<Line> lines;
    text::Reader reader(bytes);
    for (std::size_t begin = 0; const auto text = reader.line(); begin = reader.offset()) {
        lines.push_back({*text, bytes.substr(begin, reader.offset() - begin)});
    }
    return lines;
}

std::string absolute_in(const std::string& directory, std::string_view path) {
    return path.starts_with('/') ? std::string(path) : files::join(directory, path);
}

std::vector<std::string_view> fields_of(std::string_view line) {
    std::vector<std::string_view> fields;
    text::Reader reader(line, false);
    while (const auto field = reader.field()) {
        if (!field->empty()) fields.push_back(*field);
    }
    return fields;
}

/// Returns the paths on a line, as written there.
std::vector<std::string_view> paths_on(const std::string& directory, std::string_view line) {
    if (line.empty() || line.starts_with('#')) return {};
    if (files::file_size(absolute_in(directory, line))) return {line};
    return fields_of(line);
}

/// Returns the line end that the list uses.
std::string_view line_end_of(std::string_view bytes) {
    return text::is_unix_text(bytes) ? "\n" : "\r\n";
}

/// Returns the path as the list writes it.
std::string written_path(const std::string& list, const std::string& picture) {
    const std::string below = files::join(files::dir_of(list), "");
    return picture.starts_with(below) ? picture.substr(below.size()) : picture;
}

/// Returns the rest of a line without `picture`: all its bytes if the line does not name it.
std::string without(const std::string& directory, const Line& line, const std::string& picture,
                    std::string_view line_end) {
    const std::vector<std::string_view> paths = paths_on(directory, line.text);
    const auto names_it = [&](std::string_view path) { return is_same_picture(absolute_in(directory, path), picture); };
    // A picture that no longer exists can't be recognised among the fields of a line with commas.
    if (names_it(line.text)) return {};
    if (std::none_of(paths.begin(), paths.end(), names_it)) return std::string(line.whole);
    std::string rest;
    for (const std::string_view path : paths) {
        if (!names_it(path)) rest.append(path).append(line_end);
    }
    return rest;
}

}  // namespace

Status make_favorites_list(const std::string& path) {
    if (files::exists(path)) return Done{};
    Result<files::AtomicFile> file = files::AtomicFile::create(path);
    if (!file) return file.error();
    const Result<std::string> made = file->publish(files::OnCollision::fail);
    if (!made && made.error().code != ErrorCode::exists) return made.error();
    return Done{};
}

std::vector<std::string> favorite_pictures(const std::string& path) {
    std::vector<std::string> pictures;
    const Result<std::string> bytes = files::read_file(path);
    if (!bytes) return pictures;
    const std::string directory = files::dir_of(path);
    for (const Line& line : lines_of(*bytes)) {
        for (const std::string_view each : paths_on(directory, line.text)) {
            pictures.push_back(absolute_in(directory, each));
        }
    }
    return pictures;
}

Result<Added> add_favorite(const std::string& path, const std::string& picture) {
    if (const Status made = make_favorites_list(path); !made) return made.error();
    Result<std::string> bytes = files::read_file(path);
    if (!bytes) return bytes.error();
    const std::string directory = files::dir_of(path);
    for (const Line& line : lines_of(*bytes)) {
        if (is_same_picture(absolute_in(directory, line.text), picture)) return Added::was_there;
    }
    for (const std::string& each : favorite_pictures(path)) {
        if (is_same_picture(each, picture)) return Added::was_there;
    }
    std::string changed = std::move(*bytes);
    const std::string_view line_end = line_end_of(changed);
    if (!changed.empty() && !changed.ends_with('\n') && !changed.ends_with('\r')) changed += line_end;
    changed.append(written_path(path, picture)).append(line_end);
    if (const Status written = files::rewrite_file(path, changed); !written) return written.error();
    return Added::added;
}

Status remove_favorite(const std::string& path, const std::string& picture) {
    const Result<std::string> bytes = files::read_file(path);
    if (!bytes) return bytes.error();
    const std::string_view line_end = line_end_of(*bytes);
    std::string changed;
    for (const Line& line : lines_of(*bytes)) changed += without(files::dir_of(path), line, picture, line_end);
    return changed == *bytes ? Status(Done{}) : files::rewrite_file(path, changed);
}

bool is_same_picture(const std::string& a, const std::string& b) {
    if (a == b) return true;
    if (!text::equal_ignoring_case(a, b)) return false;
    return !files::exists(a) || !files::exists(b) || files::same_file(a, b);
}

}  // namespace quill::viewer
