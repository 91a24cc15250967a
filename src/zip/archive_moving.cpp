#include "zip/archive_moving.h"

#include "files/directory.h"
#include "files/moving.h"
#include "files/path.h"
#include "text/count.h"
#include "zip/archive_document.h"
#include "zip/archive_leaving.h"
#include "zip/archive_loading.h"
#include "zip/archive_panel.h"
#include "zip/archive_rows.h"
#include "zip/archive_run.h"
#include "zip/archive_saving.h"

#include <filesystem>
#include <set>
#include <vector>

namespace quill::zip {
namespace {

/// The result of a move.
struct Moved {
    std::size_t files = 0;
    std::size_t failed = 0;
    std::string reason;           ///< why the last failed one did
    bool stopped = false;         ///< by the user
    std::set<std::string> paths;  ///< old paths of the files, below WorkDir

    void fail(std::string why) {
        ++failed;
        reason = std::move(why);
    }
};

bool is_directory_row(const arcview& w, std::size_t row) {
    return w.listed && row < w.listed->archive.members().size() && w.listed->archive.members()[row].is_directory();
}

bool has_file(WorkCopies& copies, std::size_t row) {
    const CopyState state = copies.state_of(row);
    return state == CopyState::untouched || state == CopyState::changed;
}

/// Moves the file of a row to `to`, or copies it if it is the user's own.
Status move_file(arcview& w, std::size_t row, const std::string& to, const files::CopyWatch& watch) {
    WorkCopies& copies = w.archives.copies();
    const std::string from = copies.path_of(row);
    if (files::same_file(files::dir_of(from), files::dir_of(to))) return Done{};  // already in place
    const auto move = copies.of(row)->made_here ? files::move_to_free_name : files::copy_to_free_name;
    const Result<std::string> moved = move(from, to, watch);
    return moved ? Status(Done{}) : Status(moved.error());
}

void move_row(arcview& w, std::size_t row, const std::string& target, const files::CopyWatch& watch, Moved& moved) {
    const std::string path = w.archives.copies().of(row)->result.path;
    const Status status = move_file(w, row, files::join(target, path), watch);
    if (status) {
        ++moved.files;
        moved.paths.insert(path);
        return;
    }
    moved.stopped = status.error().code == ErrorCode::cancelled;
    if (!moved.stopped) moved.fail(status.error().text);
}

/// Moves the files of the rows. Rows that were `wanted` one by one must have one.
Moved move_rows(arcview& w, const std::vector<std::size_t>& rows, const std::string& target, bool wanted) {
    ArchiveRun run(w, "Moving");
    Moved moved;
    for (std::size_t i = 0; i < rows.size() && !moved.stopped; ++i) {
        const auto goes_on = [&](std::uint64_t) { return run.goes_on({i, rows.size(), 0, 0}); };
        if (is_directory_row(w, rows[i])) {
            std::error_code ignored;
            std::filesystem::create_directories(files::join(target, w.listed->paths[rows[i]].path), ignored);
        } else if (has_file(w.archives.copies(), rows[i])) {
            move_row(w, rows[i], target, goes_on, moved);
        } else if (wanted) {
            moved.fail("it could not be unpacked");
        }
        moved.stopped = moved.stopped || !goes_on(0);
    }
    return moved;
}

/// Leaves the moved files to the user: undoing a change of the archive no longer affects them.
void forget_moved(arcview& w, const std::set<std::string>& paths) {
    w.archives.copies().leave_to_user(paths);
    for (ArchiveState& state : w.undo_states) state.copies.leave_to_user(paths);
}

void unpack_missing(arcview& w, const std::vector<std::size_t>& rows) {
    std::vector<std::size_t> missing;
    for (const std::size_t row : rows) {
        if (!is_directory_row(w, row) && !has_file(w.archives.copies(), row)) missing.push_back(row);
    }
    if (!missing.empty()) unpack_rows(w, missing);
}

void report(arcview& w, const Moved& moved, const std::string& target) {
    if (moved.failed != 0) {
        w.context.platform.warn(text::counted(moved.failed, "file") + " could not be moved and stay in " +
                                w.context.session.WorkDir + ": " + moved.reason + ".");
    } else if (!moved.stopped) {
        w.context.platform.message(text::counted(moved.files, "file") + " moved to " + target + ".", "Move");
    }
}

}  // namespace

void move_files(arcview& w) {
    const Unwatched unwatched(w);
    const bool selected = w.take_selected.chosen;
    const std::vector<std::size_t> rows = panel_rows(w);
    const std::string target = panel_directory(w);
    if (!(selected ? settle_changes(w, rows) : settle_changes(w))) return;
    if (selected) unpack_missing(w, rows);
    const bool in_place = files::same_file(target, w.context.session.WorkDir);
    const Moved moved = move_rows(w, rows, target, selected);
    forget_moved(w, moved.paths);
    if (in_place) w.made_directories.clear();
    const bool all_gone = !selected && moved.failed == 0 && !moved.stopped;
    if (all_gone) return clear_away_and_leave(w);
    w.Picture2.visible = moved.failed != 0 || moved.stopped;
    show_row_states(w);
    report(w, moved, target);
}

}  // namespace quill::zip
