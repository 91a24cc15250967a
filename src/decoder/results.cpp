#include "decoder/results.h"

#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "viewer/picture_names.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace quill::decoder {
namespace {

std::string directory_of(const shell::swit& w, std::size_t row) {
    return row < w.Results.size() ? w.Results[row].directory : files::current_directory();
}

/// Gives every row a record, so that records of new rows can follow.
void complete_records(shell::swit& w) {
    while (w.Results.size() < w.List3.count()) w.Results.push_back({files::current_directory(), {}});
}

/// Returns the rows of the files in `directory`, by name.
std::unordered_map<std::string, std::size_t> rows_in(const shell::swit& w, const std::string& directory) {
    std::unordered_map<std::string, std::size_t> rows;
    for (std::size_t row = 0; row < w.List3.count(); ++row) {
        if (directory_of(w, row) == directory) rows.emplace(w.List3.items()[row], row);
    }
    return rows;
}

/// Returns the row, other than `except`, of the file `name` in `directory`.
std::optional<std::size_t> find_row(const shell::swit& w, const std::string& directory, const std::string& name,
                                    std::size_t except) {
    for (std::size_t row = 0; row < w.List3.count(); ++row) {
        if (row != except && w.List3.items()[row] == name && directory_of(w, row) == directory) return row;
    }
    return std::nullopt;
}

/// Offers to show pictures if there are any.
void offer_pictures(shell::swit& w) {
    const auto& names = w.List3.items();
    w.pictures.visible = std::any_of(names.begin(), names.end(), viewer::is_picture_name);
}

/// Returns true if the file at `path` has the bytes that were checked. Its name may differ.
bool is_of(const shell::Scan& scan, const std::string& path) {
    const std::optional<files::FileStamp> now = files::stamp_through_links(path);
    return now && now->same_file(scan.stamp) && now->size == scan.stamp.size && now->modified == scan.stamp.modified &&
           now->modified_fraction == scan.stamp.modified_fraction;
}

/// Returns true if something harmful was found in the current bytes of the file at `path`.
bool has_find(const shell::ResultRecord& record, const std::string& path) {
    return record.scan && record.scan->answer == shell::ScanAnswer::found && is_of(*record.scan, path);
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
    if (row < w.Results.size() && w.Results[row].outcome) {
        result.verdict = w.Results[row].outcome->verdict;
        result.problems = w.Results[row].outcome->problems;
    }
    if (row < w.Results.size() && w.Results[row].scan && is_of(*w.Results[row].scan, result.path)) {
        result.scan = w.Results[row].scan->answer;
        result.scan_text = w.Results[row].scan->text;
    }
    return result;
}

void add_results(shell::swit& w, const std::string& directory, std::vector<NewResult> found,
                 const std::string& source) {
    if (found.empty()) return;
    complete_records(w);
    ++w.runs;
    std::unordered_map<std::string, std::size_t> rows = rows_in(w, directory);
    std::optional<std::size_t> first;
    for (NewResult& result : found) {
        const auto [place, is_new] = rows.emplace(result.name, w.List3.count());
        if (is_new) {
            w.List3.add(result.name);
            w.Results.push_back({directory, std::move(result.outcome), {}, source, w.runs});
        } else {
            w.List3.replace(place->second, result.name);  // the same name, but of another file
            w.Results[place->second] = {directory, std::move(result.outcome), {}, source, w.runs};
        }
        if (!first) first = place->second;
    }
    w.List3.selected = first;
    w.Command5.enabled = w.Command7.enabled = w.Command8.enabled = true;
    offer_pictures(w);
}

void replace_result(shell::swit& w, std::size_t row, const std::string& name) {
    w.List3.replace(row, name);
    offer_pictures(w);
    const std::optional<std::size_t> former = find_row(w, directory_of(w, row), name, row);
    if (!former) return;
    std::optional<std::size_t> selected = w.List3.selected;
    remove_result(w, *former);
    if (selected == former) selected = row;
    if (selected && *selected > *former) --*selected;
    w.List3.selected = selected;
}

void keep_scan(shell::swit& w, const std::string& path, const shell::Scan& scan) {
    complete_records(w);
    for (std::size_t row = 0; row < w.List3.count(); ++row) {
        if (result_path(w, row) != path) continue;
        if (scan.answer == shell::ScanAnswer::not_checked && has_find(w.Results[row], path)) continue;
        w.Results[row].scan = scan;
        w.List3.replace(row, w.List3.items()[row]);  // redraws it
    }
}

void remove_result(shell::swit& w, std::size_t row) {
    if (row < w.Results.size()) w.Results.erase(w.Results.begin() + static_cast<std::ptrdiff_t>(row));
    w.List3.remove(row);
    offer_pictures(w);
}

}  // namespace quill::decoder
