#include "zip/archive_names.h"

#include "archive/names/member_names.h"
#include "files/path.h"
#include "zip/archive_document.h"
#include "zip/archive_loading.h"
#include "zip/foreign_changes.h"

#include <array>
#include <filesystem>
#include <set>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace quill::zip {
namespace {

/// The uses of the sets, in the order of `character_sets`.
constexpr std::array<std::string_view, character_sets.size()> uses = {
    "DOS, English", "DOS, Western Europe", "DOS, Russian", "Japanese", "Chinese", "Windows, Western Europe", "Unicode"};

/// Removes empty directories that only the old names had.
void remove_old_directories(arcview& w, const std::set<std::string>& wanted) {
    const auto is_old = [&](const std::string& path) {
        return !wanted.contains(path.substr(w.context.session.WorkDir.size() + 1)) && rmdir(path.c_str()) == 0;
    };
    std::vector<std::string>& made = w.made_directories;
    for (std::size_t i = made.size(); i-- > 0;) {
        if (is_old(made[i])) made.erase(made.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

/// Renames the files in WorkDir after the members. Open or changed files keep their names.
void rename_files(arcview& w, const OpenedArchive& before, const OpenedArchive& now) {
    WorkCopies& copies = w.archives.copies();
    note_new_directories(w);
    bool renamed = false;
    for (std::size_t row = 0; row < copies.count(); ++row) {
        const std::string path = now.paths[row].path;
        if (path == before.paths[row].path) continue;
        if (now.archive.members()[row].is_directory()) {
            std::error_code failed;
            std::filesystem::create_directories(files::join(w.context.session.WorkDir, path), failed);
        } else {
            renamed = copies.move(row, path) || renamed;
        }
    }
    remove_old_directories(w, member_directories(now));
    if (!renamed) return;
    for (ArchiveState& state : w.undo_states) state.copies.follow(copies);
}

}  // namespace

std::string caption_of_names(int number) {
    if (number == 0) return "&Automatic";
    const auto place = static_cast<std::size_t>(number - 1);
    return std::string(character_sets.at(place).name).append(" (").append(uses.at(place)).append(")");
}

void choose_names(arcview& w, int number) {
    const Unwatched unwatched(w);
    if (!archive_is_ours(w) || !w.listed) return;
    const std::shared_ptr<const OpenedArchive> before = w.listed;
    w.names_in.for_each([&](int i, controls::MenuItem& item) { item.checked = i == number; });
    w.archives.library().read_names_in(number == 0 ? std::string_view()
                                                   : character_sets.at(static_cast<std::size_t>(number - 1)).code_page);
    const std::optional<std::size_t> selected = w.List1.selected;
    const std::vector<std::size_t> selected_rows = w.List1.selected_rows;
    std::map<std::size_t, MemberResult> tested = std::move(w.tested);
    w.archives.ListContents(w.view());
    w.List1.selected = selected;
    w.List1.selected_rows = selected_rows;
    const std::shared_ptr<const OpenedArchive> now = w.archives.library().open(w.ArchivePath);
    if (now && now->paths.size() == before->paths.size()) rename_files(w, *before, *now);
    take_archive(w);
    w.tested = std::move(tested);
}

}  // namespace quill::zip
