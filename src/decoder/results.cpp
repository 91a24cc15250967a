#include "decoder/results.h"

#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"

#include <algorithm>
#include <utility>

namespace quill::decoder {
namespace {

std::string directory_of(const shell::swit& w, std::size_t row) {
    return row < w.ResultDirs.size() ? w.ResultDirs[row] : files::current_directory();
}

/// The row, other than `except`, that is called `name` and lies in `directory`.
std::optional<std::size_t> find_row(const shell::swit& w, const std::string& directory, const std::string& name,
                                    std::optional<std::size_t> except = {}) {
    for (std::size_t row = 0; row < w.List3.count(); ++row) {
        if (row != except && w.List3.items()[row] == name && directory_of(w, row) == directory) return row;
    }
    return std::nullopt;
}

void remove_row(shell::swit& w, std::size_t row) {
    if (row < w.ResultDirs.size()) w.ResultDirs.erase(w.ResultDirs.begin() + static_cast<std::ptrdiff_t>(row));
    w.List3.remove(row);
}

/// Whether what is known of a file called like the row's is of that file: of several in different directories it is of
/// the last one found.
bool is_last_of_its_name(const shell::swit& w, std::size_t row) {
    const auto& names = w.List3.items();
    const auto behind = names.begin() + static_cast<std::ptrdiff_t>(row) + 1;
    return std::find(behind, names.end(), names[row]) == names.end();
}

}  // namespace

std::string result_path(const shell::swit& w, std::size_t row) {
    const std::string& name = w.List3.items().at(row);
    const std::string directory = directory_of(w, row);
    return files::join(directory, files::find_name(directory, name).value_or(name));
}

ResultRow result_row(const shell::swit& w, std::size_t row) {
    ResultRow result{w.List3.items().at(row), result_path(w, row)};
    result.size = files::file_size(result.path);
    const auto known = w.Outcomes.find(result.name);
    if (known != w.Outcomes.end() && is_last_of_its_name(w, row)) {
        result.verdict = known->second.verdict;
        result.problems = known->second.problems;
    }
    return result;
}

void add_result(shell::swit& w, const std::string& directory, const std::string& name) {
    if (const std::optional<std::size_t> row = find_row(w, directory, name)) {
        w.List3.replace(*row, name);  // the same name, of a file made anew
        return;
    }
    while (w.ResultDirs.size() < w.List3.count()) w.ResultDirs.push_back(directory_of(w, w.ResultDirs.size()));
    w.List3.add(name);
    w.ResultDirs.push_back(directory);
}

void replace_result(shell::swit& w, std::size_t row, const std::string& name) {
    auto known = w.Outcomes.extract(w.List3.items().at(row));
    w.Outcomes.erase(name);
    if (known) {
        known.key() = name;
        w.Outcomes.insert(std::move(known));
    }
    w.List3.replace(row, name);
    const std::optional<std::size_t> former = find_row(w, directory_of(w, row), name, row);
    if (!former) return;
    const std::optional<std::size_t> selected = w.List3.selected;
    remove_row(w, *former);
    if (selected) w.List3.selected = *selected == *former ? row : *selected;
    if (w.List3.selected && *w.List3.selected > *former) --*w.List3.selected;
}

void remove_result(shell::swit& w, std::size_t row) {
    w.Outcomes.erase(w.List3.items().at(row));
    remove_row(w, row);
}

}  // namespace quill::decoder
