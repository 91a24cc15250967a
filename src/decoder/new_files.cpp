#include "decoder/new_files.h"

#include "decoder/results.h"
#include "files/directory.h"
#include "files/path.h"
#include "text/ascii.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace quill::decoder {
namespace {

constexpr std::string_view snapshot = "snapshot-f";

bool is_misnamed_snapshot(std::string_view name) {
    return name.size() > snapshot.size() && text::starts_with_ignoring_case(name, snapshot) &&
           !text::ends_with_ignoring_case(name, "jpg");
}

/// Renames a file of `directory` to the first free name of the series `name` + 1 + ".jpg", `name` + 2 + ".jpg" ...
/// Returns its new name.
std::string rename_to_picture(const std::string& directory, const std::string& name) {
    for (unsigned n = 1;; ++n) {
        std::string picture = name + std::to_string(n) + ".jpg";
        const Status renamed = files::rename_new(files::join(directory, name), files::join(directory, picture));
        if (renamed) return picture;
        if (renamed.error().code != ErrorCode::exists) return name;
    }
}

}  // namespace

std::vector<std::string> find_new_files(shell::swit& w, std::span<const codec::Recovered> written) {
    w.File3.refresh();
    std::unordered_set<std::string_view> before(w.File2.items().begin(), w.File2.items().end());
    for (const codec::Recovered& file : written) {
        if (!file.path.empty()) before.erase(file.name);
    }
    std::vector<std::string> found;
    for (const std::string& name : w.File3.items()) {
        if (!before.contains(name)) found.push_back(name);
    }
    return found;
}

void show_results(shell::swit& w, const std::vector<std::string>& names, std::span<const codec::Recovered> written,
                  const std::string& source) {
    if (names.empty()) return;
    const std::string& directory = w.File3.directory();
    std::unordered_map<std::string_view, const codec::Outcome*> outcomes;
    for (const codec::Recovered& file : written) {
        if (!file.path.empty()) outcomes[file.name] = &file.outcome;
    }
    std::vector<NewResult> results;
    for (const std::string& name : names) {
        const auto known = outcomes.find(name);
        NewResult result{is_misnamed_snapshot(name) ? rename_to_picture(directory, name) : name};
        if (known != outcomes.end()) result.outcome = *known->second;
        results.push_back(std::move(result));
    }
    add_results(w, directory, std::move(results), source);
    w.Picture2.visible = w.Picture1.visible = true;
}

}  // namespace quill::decoder
