#include "files/copies.h"

#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/names.h"
#include "files/path.h"

#include <functional>

namespace quill::files {
namespace {

constexpr std::size_t most_compared = 8;  // of files with the same hash: a bound against names made to cost time

std::string path_in_row(const std::string& path, unsigned number) {
    return join(dir_of(path), numbered_name(name_of(path), number));
}

std::size_t hash_of(std::string_view bytes) {
    return std::hash<std::string_view>()(bytes);
}

}  // namespace

/// Notes the sizes of the files in the series of `path` beyond those already seen.
void Copies::look(Row& row, const std::string& path) {
    for (unsigned number = row.seen + 1;; ++number) {
        const std::string name = path_in_row(path, number);
        if (!exists(name)) break;
        row.seen = number;
        if (is_link(name)) continue;
        if (const auto size = file_size(name)) row.by_size[*size].unread.push_back(number);
    }
}

void Copies::read(SameSize& files, const std::string& path) {
    for (const unsigned number : files.unread) {
        const auto file = MappedFile::open(path_in_row(path, number));
        if (file) files.by_hash[hash_of(file->bytes())].push_back(number);
    }
    files.unread.clear();
}

std::optional<std::string> Copies::find(const std::string& path, std::string_view bytes) {
    Row& row = rows_[path];
    look(row, path);
    const auto same_size = row.by_size.find(bytes.size());
    if (same_size == row.by_size.end()) return std::nullopt;
    read(same_size->second, path);
    const auto same_hash = same_size->second.by_hash.find(hash_of(bytes));
    if (same_hash == same_size->second.by_hash.end()) return std::nullopt;
    std::size_t compared = 0;
    for (const unsigned number : same_hash->second) {
        const std::string name = path_in_row(path, number);
        const auto file = MappedFile::open(name);
        if (file && file->bytes() == bytes && !file->changed()) return name;
        if (++compared == most_compared) break;
    }
    return std::nullopt;
}

}  // namespace quill::files
