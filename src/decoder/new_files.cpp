#include "decoder/new_files.h"

#include "decoder/results.h"
#include "files/directory.h"
#include "text/ascii.h"

#include <string_view>
#include <unordered_set>
#include <utility>

namespace quill::decoder {
namespace {

constexpr std::string_view snapshot = "snapshot-f";

bool is_misnamed_snapshot(std::string_view name) {
    return name.size() > snapshot.size() && text::starts_with_ignoring_case(name, snapshot) &&
           !text::ends_with_ignoring_case(name, "jpg");
}

/// The first name of the row `name` + 1 + ".jpg", `name` + 2 + ".jpg" ... that no file with any content has.
std::string picture_name(const std::string& name) {
    for (unsigned n = 1;; ++n) {
        std::string candidate = name + std::to_string(n) + ".jpg";
        if (files::file_size(candidate).value_or(0) == 0) return candidate;
    }
}

}  // namespace

NewFiles find_new_files(shell::swit& w) {
    w.File3.refresh();
    if (w.File3.count() < w.File2.count()) {
        w.File3.refresh();
        return {Change::fewer_files, {}};
    }
    if (w.File3.count() == w.File2.count()) return {Change::none, {}};
    const std::unordered_set<std::string_view> before(w.File2.items().begin(), w.File2.items().end());
    NewFiles found{Change::more_files, {}};
    for (const std::string& name : w.File3.items()) {
        if (!before.contains(name)) found.names.push_back(name);
    }
    return found;
}

void show_results(shell::swit& w, const std::vector<std::string>& names) {
    for (const std::string& name : names) add_result(w, w.File3.directory(), name);
    if (names.empty()) return;
    w.Picture5.visible = false;
    w.Picture2.visible = true;
    w.Picture1.visible = true;
}

void rename_snapshots(shell::swit& w) {
    for (std::size_t row = 0; row < w.List3.count(); ++row) {
        const std::string name = w.List3.items()[row];
        if (!is_misnamed_snapshot(name)) continue;
        const std::string picture = picture_name(name);
        (void)files::rename_new(name, picture);  // the row follows in any case
        replace_result(w, row, picture);
    }
}

}  // namespace quill::decoder
