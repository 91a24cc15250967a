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
#include "zip/member_rows.h"

#include <utility>

namespace quill::zip {
namespace {

constexpr std::size_t most_undo_states = 8;
constexpr std::size_t few_members = 2000;  // so many files are looked at while nothing else goes on

enum class Answer : std::uint8_t { save, save_all, leave_out, leave_out_all, cancel };

struct AnswerRow {
    Answer answer;
    const char* caption;
    bool for_one;  // offered where it is the only file, too
};

constexpr AnswerRow answers[] = {{Answer::save, "&Save", true},
                                 {Answer::save_all, "Save &all", false},
                                 {Answer::leave_out, "&Leave out", true},
                                 {Answer::leave_out_all, "Leave &out all", false},
                                 {Answer::cancel, "&Cancel", true}};

Answer ask_about(arcview& w, std::size_t row, bool more) {
    platform::Choices choices;
    choices.text = text::printable(row_details(w, row).name) +
                   " was changed after it was unpacked, and the archive still has it as it was. Save it into the "
                   "archive?\n\nWhat is left out stays as a file in " +
                   w.context.session.WorkDir + ".";
    choices.title = "Changed files";
    std::vector<Answer> offered;
    for (const AnswerRow& row_of_answer : answers) {
        if (!row_of_answer.for_one && !more) continue;
        offered.push_back(row_of_answer.answer);
        choices.answers.emplace_back(row_of_answer.caption);
    }
    choices.escape_answer = offered.size() - 1;
    return offered.at(w.context.platform.choose(choices));
}

/// Returns whether all bytes are still those that were there when the file was opened.
bool is_as_opened(const files::MappedFile& file) {
    return !file.cut_short() && !file.changed();
}

void use_archive(arcview& w, const std::string& path) {
    w.context.session.SelectedDir = files::dir_of(path);
    w.context.session.SelectedFile = files::name_of(path);
    show_archive_path(w, path);
}

/// Writes the archive as the rows show it under a free name, and goes on with that one.
bool go_on_with_ours(arcview& w) {
    Result<files::AtomicFile> copy = files::AtomicFile::create(w.ArchivePath);
    if (copy) copy->write(w.bytes->bytes());
    const Result<std::string> path = copy ? copy->publish(files::OnCollision::choose_name, files::Durability::flushed)
                                          : Result<std::string>(copy.error());
    if (!path) {
        w.context.platform.message("The archive could not be written: " + path.error().text + ".");
        return false;
    }
    use_archive(w, *path);
    take_archive(w);
    w.context.platform.message("The archive as this window shows it is now " + *path + ".");
    return true;
}

/// What another program has done to the archive.
struct ForeignChange {
    bool gone = false;
    bool ours_is_kept = false;  ///< its bytes from before are still there to be read
};

ForeignChange foreign_change(const arcview& w) {
    const std::optional<files::FileStamp> now = files::stamp_through_links(w.ArchivePath);
    return {!now, w.bytes && is_as_opened(*w.bytes) && !(now && w.stamp && now->same_file(*w.stamp))};
}

bool resolve_foreign_change(arcview& w) {
    const ForeignChange change = foreign_change(w);
    platform::Choices choices;
    choices.title = "The archive was changed";
    choices.text = w.ArchivePath + (change.gone ? " is no longer there." : " was changed by another program.");
    enum { reload, ours, cancel };
    std::vector<int> offered;
    const auto offer = [&](int answer, const char* caption) {
        offered.push_back(answer);
        choices.answers.emplace_back(caption);
    };
    if (!change.gone) offer(reload, "&Reload");
    if (change.ours_is_kept) offer(ours, "&Go on with mine");
    offer(cancel, "&Cancel");
    choices.escape_answer = offered.size() - 1;
    switch (offered.at(w.context.platform.choose(choices))) {
        case reload:
            reload_archive(w);
            return false;  // the rows that the user saw are not those that are there now
        case ours:
            return go_on_with_ours(w);
        default:
            return false;
    }
}

void keep_for_undo(arcview& w, const std::string& what) {
    Result<files::MappedFile> before = files::MappedFile::open(w.ArchivePath);
    if (!before) return;
    if (w.undo_states.size() == most_undo_states) w.undo_states.erase(w.undo_states.begin());
    w.undo_states.push_back({std::move(*before), w.archives.copies(), what});
}

/// Fails where the locked archive is no longer what the rows show.
Status check_ours(const arcview& w, const ArchiveLock& lock) {
    if (lock.stamp() == w.stamp && lock.holds()) return Done{};
    return Error{ErrorCode::access, 0, "another program has changed the archive meanwhile"};
}

/// Gives the archive the bytes that it had. Where that fails, with `cancelled` when the user stops it, nothing changes.
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
    if (!is_as_opened(before.bytes)) return Error{ErrorCode::io, 0, "its bytes from before are lost"};
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
    w.listed = w.archives.library().open(w.ArchivePath);
    w.stamp = files::stamp_through_links(w.ArchivePath);
    Result<files::MappedFile> bytes = files::MappedFile::open(w.ArchivePath);
    w.bytes.reset();
    if (bytes) w.bytes.emplace(std::move(*bytes));
    const std::vector<std::size_t> changed = w.archives.copies().changed();
    w.changed_rows = {changed.begin(), changed.end()};
    w.tested.clear();
    w.lock.enabled = !has_encrypted_members(w);
    w.nam.enabled = w.listed && w.listed->archive.has_names_without_sign();
    w.extract.enabled = w.exs.enabled = w.test.enabled = w.List1.count() != 0;
    ++w.shown_revision;
    RenderRows(w);
    show_title(w);
}

void notice_changes(arcview& w) {
    const Unwatched unwatched(w);
    const std::vector<std::size_t> changed = w.archives.copies().changed(w.List1.count() > few_members);
    const std::set<std::size_t> rows(changed.begin(), changed.end());
    if (rows != w.changed_rows) {
        w.changed_rows = rows;
        ++w.shown_revision;
        show_title(w);
    }
    const std::optional<files::FileStamp> now = files::stamp_through_links(w.ArchivePath);
    if (now == w.stamp || (w.asked_about && *w.asked_about == now)) return;
    w.asked_about.emplace(now);
    resolve_foreign_change(w);
}

bool archive_is_ours(arcview& w) {
    if (files::stamp_through_links(w.ArchivePath) == w.stamp) return true;
    const Unwatched unwatched(w);
    return resolve_foreign_change(w);
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
        w.context.platform.message("The archive was not changed: " + w.archives.failure().text + ".");
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
        if (!stopped) w.context.platform.message("The change could not be taken back: " + written.error().text + ".");
        return;
    }
    w.archives.copies().go_back_to(before.copies);
    w.undo_states.pop_back();
    w.archives.ListContents(w.view());
    take_archive(w);
}

bool save_rows(arcview& w, const std::vector<std::size_t>& rows) {
    if (rows.empty()) return true;
    const std::string what = rows.size() == 1 ? "save of " + text::printable(row_details(w, rows.front()).name)
                                              : "save of " + text::counted(rows.size(), "file");
    return make_change(w, what, [&] { return w.archives.save_copies(w.view(), rows, w.IDC_ENCRYPTCODE.text); });
}

bool settle_changes(arcview& w) {
    const std::vector<std::size_t> changed = w.archives.copies().changed();
    std::vector<std::size_t> saved;
    std::optional<Answer> for_all;
    for (std::size_t i = 0; i < changed.size(); ++i) {
        const Answer answer = for_all ? *for_all : ask_about(w, changed[i], i + 1 < changed.size());
        if (answer == Answer::cancel) return false;
        if (answer == Answer::save_all || answer == Answer::leave_out_all) for_all = answer;
        if (answer == Answer::save || answer == Answer::save_all) saved.push_back(changed[i]);
    }
    return save_rows(w, saved);
}

}  // namespace quill::zip
