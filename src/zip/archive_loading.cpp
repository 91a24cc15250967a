#include "zip/archive_loading.h"

#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "shell/main_window.h"
#include "text/ascii.h"
#include "text/count.h"
#include "zip/archive_actions.h"
#include "zip/archive_document.h"
#include "zip/archive_password.h"
#include "zip/archive_reading.h"
#include "zip/archive_rows.h"
#include "zip/archive_run.h"
#include "zip/archive_saving.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <limits>
#include <set>
#include <sys/stat.h>
#include <utility>

namespace quill::zip {
namespace {

constexpr auto name_question = "Enter a name for the ZIP file you wish to create\n\nExample:  NEW.ZIP";
constexpr auto wrong_ending = "     Filename must end in .zip, try again.";

/// The directory and the name of the archive, without the mark that SelectedDir may begin with.
struct Place {
    char mark = 0;  ///< '?', '+', or none
    std::string path;
};

Place place_of(const shell::Session& session) {
    const std::string path = files::join(session.SelectedDir, session.SelectedFile);
    const bool marked = path.starts_with('?') || path.starts_with('+');
    return {marked ? path.front() : '\0', marked ? path.substr(1) : path};
}

/// Asks for the name of a new archive until it is valid; empty if the user wants none.
std::string ask_for_name(platform::Platform& platform) {
    for (;;) {
        std::string name = platform.input({.text = name_question, .title = "What's my name?"});
        if (name.empty() || text::ends_with_ignoring_case(name, ".zip")) return name;
        platform.message(wrong_ending);
    }
}

void place_window(arcview& w, char mark) {
    constexpr int from_left = 1900, from_top = 1900;  // twips
    constexpr int left_of_corner = 200, above_corner = 400;
    w.left = mark == '+' ? left_of_corner : from_left;
    w.top = mark == '+' ? w.context.platform.machine().screen_height() - above_corner - w.height : from_top;
}

/// Determines the archive. Returns false if there is none to show.
bool find_archive(arcview& w) {
    shell::Session& session = w.context.session;
    Place place = place_of(session);
    place_window(w, place.mark);
    if (place.mark == '?') {
        files::change_directory(place.path);
        const std::string name = ask_for_name(w.context.platform);
        if (name.empty()) return false;
        place.path = files::join(files::current_directory(), name);
    }
    session.SelectedDir = files::dir_of(place.path);
    session.SelectedFile = files::name_of(place.path);
    show_archive_path(w, place.path);
    files::change_directory(session.SelectedDir);
    const std::string ending = text::to_lower(text::last(place.path, 3));
    return ending == "zip" || ending == "htx";
}

void report_unreadable(arcview& w) {
    w.context.platform.warn(w.ArchivePath + " can't be opened: " + w.archives.library().last_error().text + ".");
}

/// Lists the archive. A missing one is new, with an empty list.
bool list_archive(arcview& w) {
    if (!files::exists(w.ArchivePath)) return true;
    if (w.archives.ListContents(w.view()) || w.archives.library().open(w.ArchivePath)) return true;
    report_unreadable(w);
    return false;
}

/// Makes a directory for only this archive in the program's own work directory, even if the archive is there as another
/// one's member. A directory that is not the program's is used unchanged. Returns false, with the reason reported, if
/// there is none to unpack into.
bool choose_work_dir(arcview& w) {
    shell::Session& session = w.context.session;
    auto& main = w.context.windows.load<shell::swit>();
    const std::string& own = main.Text1.text;
    if (session.WorkDir != own && !session.WorkDir.starts_with(own + '/')) return true;
    session.WorkDir = own;
    constexpr mode_t for_the_user_alone = 0700;
    mkdir(session.WorkDir.c_str(), for_the_user_alone);
    const std::string wanted = files::join(session.WorkDir, files::safe_name(session.SelectedFile));
    const Result<std::string> made = files::make_new_directory(wanted, for_the_user_alone);
    if (made) {
        session.WorkDir = *made;
        w.work_dir_is_private = true;
    } else {
        w.context.platform.warn("No directory can be made in " + session.WorkDir + " to unpack into: " +
                                made.error().text + ". The files are listed, but they can't be opened.");
    }
    return made.ok();
}

std::uint64_t bytes_of(const Archive& archive, const std::vector<std::size_t>& rows) {
    std::uint64_t sum = 0;
    for (const std::size_t row : rows) {
        sum += std::min(archive.members().at(row).uncompressed_size, std::numeric_limits<std::uint64_t>::max() - sum);
    }
    return sum;
}

/// Notes the results for the members of `rows` with the password of the trial.
void note_results(arcview& w, const std::vector<std::size_t>& rows, PasswordTrial& trial) {
    const std::shared_ptr<const OpenedArchive> opened = w.archives.library().open(w.ArchivePath);
    for (const std::size_t row : rows) {
        const WorkCopy* copy = w.archives.copies().of(row);
        if (opened && copy != nullptr) trial.note(opened->archive.members()[row], copy->result);
    }
}

/// Extracts with `extract`, and again with other passwords the members that need them. Drops a password that opens
/// nothing if `forgets_wrong_one` is set.
std::int16_t extract_with_passwords(arcview& w, std::vector<std::size_t> rows, bool forgets_wrong_one,
                                    const std::function<std::int16_t()>& extract) {
    PasswordTrial trial(w);
    const std::int16_t result = extract();
    note_results(w, rows, trial);
    if (forgets_wrong_one && trial.has_failed()) w.context.session.ZipPassword.clear();
    while (!(rows = trial.next_rows()).empty()) {
        w.archives.ExtractRows(w.view(), rows, trial.password());
        note_results(w, rows, trial);
    }
    return result;
}

/// Returns true if the extraction as a whole continued. Otherwise reports why not; the rows show the reasons of single
/// members.
bool report_failure(arcview& w, std::int16_t result) {
    const bool went_on = result == library_success || result == library_damaged || result == library_password ||
                         result == library_cancelled;
    const Error& failure = w.archives.failure();
    const bool is_declined = failure.code == ErrorCode::limit;  // the user knows the reason
    if (went_on || is_declined || failure.text.empty()) return went_on;
    w.context.platform.warn("The files could not be unpacked to " + w.context.session.WorkDir + ": " + failure.text +
                            ".");
    return false;
}

/// Extracts the members of `rows` with `extract`, if there is room.
void unpack(arcview& w, const std::vector<std::size_t>& rows, const std::function<std::int16_t()>& extract) {
    if (rows.empty()) return;
    note_new_directories(w);
    if (!has_room(w, rows, w.context.session.WorkDir)) return;
    const ArchiveRun run(w, "Unpacking " + files::name_of(w.ArchivePath));
    report_failure(w, extract_with_passwords(w, rows, true, extract));
}

void unpack_all(arcview& w) {
    unpack(w, all_rows(w), [&] { return w.archives.ExtractSelected(w.view()); });
}

void leave_main_window(arcview& w) {
    auto& main = w.context.windows.load<shell::swit>();
    main.Picture5.visible = false;
    main.visible = false;
    w.progress.text.clear();
}

/// Reports in one box how many members have problems, and the problems of the archive as a whole; the rows have the
/// reasons.
void report_unpacking(arcview& w) {
    std::size_t refused = 0, damaged = 0;
    for (const std::size_t row : all_rows(w)) {
        const RowCondition condition = row_details(w, row).condition;
        refused += condition == RowCondition::refused || condition == RowCondition::locked ? 1 : 0;
        damaged += condition == RowCondition::damaged ? 1 : 0;
    }
    std::string text = archive_problems(w);
    if (refused + damaged == 0 && text.empty()) return;
    if (damaged != 0) text += text::counted(damaged, "member") + (damaged == 1 ? " is" : " are") + " damaged. ";
    if (refused != 0) text += text::counted(refused, "member") + " could not be unpacked. ";
    if (refused + damaged != 0) text += "The list shows which, and why.";
    w.context.platform.warn(text, "Not all of the archive is whole");
}

/// Leaves the files of the rows in `changed` but not in `saved` to the user.
void leave_out(arcview& w, const std::vector<std::size_t>& changed, const std::vector<std::size_t>& saved) {
    std::set<std::string> paths;
    for (const std::size_t row : changed) {
        const bool is_saved = std::find(saved.begin(), saved.end(), row) != saved.end();
        if (!is_saved) paths.insert(w.archives.copies().of(row)->result.path);
    }
    w.archives.copies().leave_to_user(paths);
}

/// Extracts all members except those whose files are to be saved.
void unpack_again(arcview& w) {
    std::vector<std::size_t> rows = all_rows(w);
    std::erase_if(rows, [&](std::size_t row) { return w.archives.copies().state_of(row) == CopyState::changed; });
    unpack(w, rows, [&] { return w.archives.ExtractRows(w.view(), rows); });
}

/// Adds the files to be saved whose members, those of `before`, are gone.
void add_again(arcview& w, const std::shared_ptr<const OpenedArchive>& before, const std::vector<WorkCopy>& homeless) {
    if (homeless.empty() || !before) return;
    std::vector<ZipItem> items;
    for (const WorkCopy& copy : homeless) {
        ZipItem item{files::join(w.context.session.WorkDir, copy.result.path)};
        item.member = before->archive.members().at(copy.result.member).name;
        items.push_back(std::move(item));
    }
    add_items(w, std::move(items));
}

}  // namespace

void show_archive_path(arcview& w, const std::string& path) {
    w.ArchivePath = path;
    w.Label21.text = text::to_lower(path);
    w.Label2.text = files::dir_of(path);
    w.Label4.text = files::name_of(path);
}

std::set<std::string> member_directories(const OpenedArchive& opened) {
    std::set<std::string> seen;
    for (std::size_t i = 0; i < opened.paths.size(); ++i) {
        const bool is_directory = opened.archive.members()[i].is_directory();
        std::string directory = is_directory ? opened.paths[i].path : files::dir_of(opened.paths[i].path);
        for (; !directory.empty() && seen.insert(directory).second; directory = files::dir_of(directory)) {
        }
    }
    return seen;
}

void note_new_directories(arcview& w) {
    const std::shared_ptr<const OpenedArchive> opened = w.archives.library().open(w.ArchivePath);
    if (!opened) return;
    for (const std::string& directory : member_directories(*opened)) {
        std::string path = files::join(w.context.session.WorkDir, directory);
        if (!files::exists(path)) w.made_directories.push_back(std::move(path));
    }
}

bool has_room(arcview& w, const std::vector<std::size_t>& rows, const std::string& directory) {
    const std::shared_ptr<const OpenedArchive> opened = w.archives.library().open(w.ArchivePath);
    std::error_code failed;
    const std::filesystem::space_info space = std::filesystem::space(directory, failed);
    if (!opened || failed) return true;
    const std::uint64_t needed = bytes_of(opened->archive, rows);
    if (needed <= space.available) return true;
    return w.context.platform.ask({.text = "The files come to " + text::counted(needed, "byte") +
                                           ", and there is room for " + text::counted(space.available, "byte") +
                                           " in " + directory + ".\n\nUnpack as many as there is room for?",
                                   .title = "Not enough room",
                                   .no_is_default = true,
                                   .question_mark = true});
}

bool unpack_rows(arcview& w, const std::vector<std::size_t>& rows) {
    const Unwatched unwatched(w);
    const ArchiveRun run(w, "Unpacking");
    note_new_directories(w);
    const auto extract = [&] { return w.archives.ExtractRows(w.view(), rows); };
    const bool went_on = report_failure(w, extract_with_passwords(w, rows, false, extract));
    w.context.windows.load<shell::swit>().Picture5.visible = false;
    take_archive(w);
    return went_on;
}

void reload_archive(arcview& w) {
    const std::shared_ptr<const OpenedArchive> before = w.listed, now = w.archives.library().open(w.ArchivePath);
    if (!now) return report_unreadable(w);
    WorkCopies& copies = w.archives.copies();
    const std::vector<std::size_t> changed = copies.changed();
    const auto saved = ask_about_changes(w, changed);
    if (!saved) return;
    leave_out(w, changed, *saved);
    const std::vector<WorkCopy> homeless = copies.match_again(now->archive);
    w.undo_states.clear();
    w.archives.ListContents(w.view());
    unpack_again(w);
    leave_main_window(w);
    take_archive(w);
    save_rows(w, copies.changed());
    add_again(w, before, homeless);
    report_unpacking(w);
}

void load_archive_window(shell::Context& context, NewZIP& archives) {
    context.windows.unload<arcview>();
    archives.library().read_names_in({});
    archives.library().new_encryption = archive::Encryption::aes256;
    auto& w = context.windows.load<arcview>(context, archives);
    if (!find_archive(w) || !list_archive(w)) {
        context.windows.unload<arcview>();
        return;
    }
    const bool can_unpack = choose_work_dir(w);
    archives.copies().begin(context.session.WorkDir);
    if (w.List1.count() != 0) w.List1.selected = w.List1.count() - 1;
    if (can_unpack) unpack_all(w);
    w.Picture1.visible = true;
    take_archive(w);
    leave_main_window(w);
    const bool is_book = text::ends_with_ignoring_case(w.ArchivePath, "htx") && archives.show_book;
    w.visible = !is_book;
    report_unpacking(w);
    if (!is_book) return;
    w.watch.enabled = false;
    archives.show_book();
}

}  // namespace quill::zip
