#include "zip/archive_document.h"

#include "archive/changing/archive_lock.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "text/count.h"
#include "text/printable.h"
#include "zip/archive_encryption.h"
#include "zip/archive_loading.h"
#include "zip/archive_rows.h"
#include "zip/archive_run.h"
#include "zip/foreign_changes.h"
#include "zip/member_rows.h"

#include <utility>

namespace quill::zip {
namespace {

constexpr std::size_t most_undo_states = 8;
constexpr std::size_t few_members = 2000;  // so many files are checked without a delay for the user

void keep_for_undo(arcview& w, const std::string& what) {
    Result<files::MappedFile> before = files::MappedFile::open(w.ArchivePath);
    if (!before) return;
    if (w.undo_states.size() == most_undo_states) w.undo_states.erase(w.undo_states.begin());
    w.undo_states.push_back({std::move(*before), w.archives.copies(), what});
}

/// Fails if the locked archive is no longer the one that the rows show.
Status check_ours(const arcview& w, const ArchiveLock& lock) {
    if (lock.is_as_locked(w.stamp) && lock.holds()) return Done{};
    return Error{ErrorCode::access, 0, "another program has changed the archive meanwhile"};
}

/// Restores the archive's earlier bytes. Changes nothing on failure, which is `cancelled` if the user stops it.
Status write_again(arcview& w, const ArchiveState& before) {
    const ArchiveRun run(w, "Taking back the " + before.change);
    const std::string real = files::resolved(w.ArchivePath);
    const Result<ArchiveLock> lock = ArchiveLock::take(real, w.archives.progress);
    if (!lock) return lock.error();
    if (Status ours = check_ours(w, *lock); !ours) return ours;
    Result<files::AtomicFile> file = files::AtomicFile::create(real, files::Access::of_old);
    if (!file) return file.error();
    WatchKeeper keeper(w.archives.progress);
    keeper.expect(before.bytes.bytes().size());
    in_pieces(before.bytes.bytes(), keeper, [&](std::string_view part) { return file->write(part); });
    if (file->failed()) return file->error();
    if (!keeper.goes_on()) return Error{ErrorCode::cancelled, 0, "stopped"};
    if (before.bytes.changed()) return Error{ErrorCode::io, 0, "its bytes from before are lost"};
    if (Status ours = check_ours(w, *lock); !ours) return ours;
    return file->publish_as_rewrite();
}

}  // namespace

std::string as_caption(std::string_view text) {
    std::string caption;
    for (const char c : text) caption.append(c == '&' ? 2 : 1, c);
    return caption;
}

void show_title(arcview& w) {
    w.caption = files::name_of(w.ArchivePath);
    if (!w.changed_rows.empty()) w.caption += " - " + text::counted(w.changed_rows.size(), "changed file");
    w.undo.enabled = !w.undo_states.empty();
    w.undo.caption = "&Undo";
    if (w.undo_states.empty()) return;
    w.undo.caption += ' ' + as_caption(w.undo_states.back().change);
}

void take_archive(arcview& w) {
    const std::optional<files::FileStamp> before = std::exchange(w.stamp, files::stamp_through_links(w.ArchivePath));
    w.listed = w.archives.library().open(w.ArchivePath);
    if (w.stamp != before) w.crc = crc_of_archive(w.ArchivePath, w.stamp);
    Result<files::MappedFile> bytes = files::MappedFile::open(w.ArchivePath);
    w.bytes.reset();
    if (bytes) w.bytes.emplace(std::move(*bytes));
    const std::vector<std::size_t> changed = w.archives.copies().changed();
    w.changed_rows = {changed.begin(), changed.end()};
    w.tested.clear();
    w.lock.enabled = !has_encrypted_members(w);
    w.nam.enabled = w.listed && w.listed->archive.has_names_without_sign();
    w.extract.enabled = w.exs.enabled = w.test.enabled = w.List1.count() != 0;
    show_row_states(w);
    RenderRows(w);
    show_title(w);
}

void notice_changes(arcview& w) {
    const Unwatched unwatched(w);
    const std::vector<std::size_t> changed = w.archives.copies().changed(w.List1.count() > few_members);
    const std::set<std::size_t> rows(changed.begin(), changed.end());
    if (rows != w.changed_rows) {
        w.changed_rows = rows;
        show_row_states(w);
        show_title(w);
    }
    notice_foreign_change(w);
}

bool make_change(arcview& w, const std::string& what, const std::function<std::int16_t()>& change) {
    const Unwatched unwatched(w);
    if (!archive_is_ours(w)) return false;
    const std::size_t states = w.undo_states.size();
    if (w.stamp) keep_for_undo(w, what);
    const std::int16_t result = [&] {
        const ArchiveRun run(w, "Changing " + files::name_of(w.ArchivePath));
        return change();
    }();
    const bool changed = files::stamp_through_links(w.ArchivePath) != w.stamp;
    if (!changed && w.undo_states.size() > states) w.undo_states.pop_back();
    take_archive(w);
    if (result != library_success && !w.stop_wanted) {
        w.context.platform.warn("The archive was not changed: " + w.archives.failure().text + ".");
    }
    return result == library_success;
}

void undo_change(arcview& w) {
    const Unwatched unwatched(w);
    if (w.undo_states.empty() || !archive_is_ours(w)) return;
    const ArchiveState& before = w.undo_states.back();
    const Status written = write_again(w, before);
    if (!written) {
        const bool stopped = written.error().code == ErrorCode::cancelled;
        if (!stopped) w.context.platform.warn("The change could not be taken back: " + written.error().text + ".");
        return;
    }
    w.archives.copies().go_back_to(before.copies);
    w.undo_states.pop_back();
    w.archives.ListContents(w.view());
    take_archive(w);
}

}  // namespace quill::zip
