#include "zip/archive_reading.h"

#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "text/count.h"
#include "zip/archive_document.h"
#include "zip/archive_loading.h"
#include "zip/archive_panel.h"
#include "zip/archive_password.h"
#include "zip/archive_rows.h"
#include "zip/archive_run.h"
#include "zip/archive_saving.h"
#include "zip/archive_tally.h"
#include "zip/foreign_changes.h"

#include <map>
#include <utility>

namespace quill::zip {
namespace {

using ReadRows = std::function<Status(const std::vector<std::size_t>&, const ExtractOptions&, const TakeResult&)>;

ExtractOptions options_for(arcview& w, const std::string& password, ArchiveRun& run) {
    ExtractOptions options;
    options.password = password;
    options.limits = w.archives.library().limits;
    options.confirm_large = w.archives.library().confirm_large;
    options.progress = [&run](const Progress& done) { return run.goes_on(done); };
    return options;
}

/// Runs `read` over `rows`, and again over those that need another password as long as the user has one.
Status read_rows(arcview& w, const std::string& doing, std::vector<std::size_t> rows, const ReadRows& read,
                 const std::function<void(const MemberResult&)>& take) {
    const std::vector<Member>& members = w.listed->archive.members();
    w.stop_wanted = false;
    const bool has_password = find_password(w, rows);
    if (w.stop_wanted) return Error{ErrorCode::cancelled, 0, "stopped"};
    PasswordTrial trial(w);
    std::map<std::size_t, MemberResult> locked;
    Status done = Done{};
    while (done && !rows.empty()) {
        ArchiveRun run(w, doing);
        const std::string password = has_password ? trial.password() : std::string();
        done = read(rows, options_for(w, password, run), [&](MemberResult result) {
            const bool is_read = !result.needs_password;
            if (!is_read || result.verdict != Verdict::damaged) trial.note(members[result.member], result);
            if (is_read) {
                locked.erase(result.member);
                take(result);
            } else {
                locked.insert_or_assign(result.member, std::move(result));
            }
        });
        rows.clear();
        if (done && !w.stop_wanted && has_password) rows = trial.next_rows();
    }
    for (const auto& [member, result] : locked) take(result);
    return done;
}

/// Makes a directory named after the archive in `parent`; it is removed if nothing is written into it.
Result<files::Unfinished> make_own_folder(const arcview& w, const std::string& parent) {
    constexpr unsigned usual_mode = 0777;  // less the umask
    Result<std::string> made = files::make_new_directory(files::join(parent, own_folder_name(w)), usual_mode);
    if (!made) return made.error();
    return files::Unfinished(std::move(*made));
}

void report_extraction(arcview& w, const Tally& tally, const std::string& directory) {
    const bool all_are_good = tally.good() == tally.all();
    const bool is_opened =
        tally.good() != 0 && w.opens_folder.checked && w.context.platform.opener().open_with_default(directory);
    if (all_are_good && is_opened) return;
    if (all_are_good) {
        w.context.platform.message(text::counted(tally.good(), "file") + " extracted to " + directory + ".", "Extract");
        return;
    }
    w.context.platform.warn(
        "Not all of the files were extracted to " + directory + ": " + tally.counts() + "." + tally.reasons(),
        "Not everything is whole");
}

void report_test(arcview& w, const Tally& tally) {
    const bool all_are_verified = tally.of(RowCondition::verified) == tally.all();
    std::string text = archive_problems(w);
    if (all_are_verified) {
        text += text::counted(tally.all(), "member") + ", and " +
                (tally.all() == 1 ? "it is as it was packed." : "all are as they were packed.");
    } else {
        text += text::counted(tally.all(), "member") + ": " + tally.counts() + "." + tally.reasons();
    }
    const std::string title = "Test of " + files::name_of(w.ArchivePath);
    const bool all_is_well = all_are_verified && archive_problems(w).empty();
    all_is_well ? w.context.platform.message(text, title) : w.context.platform.warn(text, title);
}

}  // namespace

std::string archive_problems(const arcview& w) {
    std::string text;
    if (!w.listed) return text;
    for (const Problem& problem : w.listed->archive.problems())
        text += "The archive: " + std::string(text_of(problem)) + ".\n";
    return text;
}

void extract_files(arcview& w) {
    const Unwatched unwatched(w);
    const std::vector<std::size_t> rows = panel_rows(w);
    const std::string parent = panel_directory(w);
    if (rows.empty() || !archive_is_ours(w) || !settle_changes(w) || !has_room(w, rows, parent)) return;
    const std::shared_ptr<const OpenedArchive> opened = w.listed;
    const Result<files::Unfinished> folder =
        w.own_folder.checked ? make_own_folder(w, parent) : Result<files::Unfinished>(files::Unfinished());
    const std::string directory = folder && !folder->path().empty() ? folder->path() : parent;
    Tally tally;
    Status done = folder ? Status(Done{}) : Status(folder.error());
    if (done) {
        w.Picture2.visible = false;
        done = read_rows(
            w, "Extracting", rows,
            [&](const std::vector<std::size_t>& some, const ExtractOptions& options, const TakeResult& take) {
                return extract_members(opened->archive, some, opened->paths, directory, options, take);
            },
            [&](const MemberResult& result) { tally.add(opened->archive, result); });
    }
    if (done) {
        report_extraction(w, tally, directory);
    } else if (done.error().code != ErrorCode::cancelled) {
        w.context.platform.warn("The files could not be extracted to " + directory + ": " + done.error().text + ".");
    }
}

void test_archive(arcview& w) {
    const Unwatched unwatched(w);
    if (!archive_is_ours(w) || !w.listed) return;
    const std::shared_ptr<const OpenedArchive> opened = w.listed;
    Tally tally;
    w.tested.clear();
    const Status done = read_rows(
        w, "Testing", all_rows(w),
        [&](const std::vector<std::size_t>& some, const ExtractOptions& options, const TakeResult& take) {
            return test_members(opened->archive, some, options, take);
        },
        [&](const MemberResult& result) {
            tally.add(opened->archive, result);
            w.tested.insert_or_assign(result.member, result);
        });
    show_row_states(w);
    if (done) {
        report_test(w, tally);
    } else if (done.error().code != ErrorCode::cancelled) {
        w.context.platform.warn("The archive could not be tested: " + done.error().text + ".");
    }
}

}  // namespace quill::zip
