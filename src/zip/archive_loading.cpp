#include "zip/archive_loading.h"

#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "shell/main_window.h"
#include "text/ascii.h"
#include "text/count.h"
#include "zip/archive_document.h"
#include "zip/archive_reading.h"
#include "zip/archive_rows.h"
#include "zip/archive_run.h"

#include <algorithm>
#include <filesystem>
#include <limits>
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

/// Asks for the name of a new archive until it is one; empty where the user wants none.
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

/// Finds out which archive is meant. Returns false where there is none to be shown.
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

/// Lists the archive. One that is not there yet is a new one, whose list is empty.
bool list_archive(arcview& w) {
    if (!files::exists(w.ArchivePath)) return true;
    if (w.archives.ListContents(w.view()) || w.archives.library().open(w.ArchivePath)) return true;
    w.context.platform.message(w.ArchivePath + " can't be opened: " + w.archives.library().last_error().text + ".");
    return false;
}

/// Makes a directory for this archive alone in the program's own work directory. A directory that is not the program's
/// is used as it is.
void choose_work_dir(arcview& w) {
    shell::Session& session = w.context.session;
    auto& main = w.context.windows.load<shell::swit>();
    if (session.WorkDir != main.Text1.text) return;
    constexpr mode_t for_the_user_alone = 0700;
    mkdir(session.WorkDir.c_str(), for_the_user_alone);
    const std::string wanted = files::join(session.WorkDir, files::safe_name(session.SelectedFile));
    const Result<std::string> made = files::make_new_directory(wanted, for_the_user_alone);
    if (!made) return;
    session.WorkDir = *made;
    w.work_dir_is_private = true;
}

std::uint64_t bytes_of(const Archive& archive, const std::vector<std::size_t>& rows) {
    std::uint64_t sum = 0;
    for (const std::size_t row : rows) {
        sum += std::min(archive.members().at(row).uncompressed_size, std::numeric_limits<std::uint64_t>::max() - sum);
    }
    return sum;
}

/// The rows among `rows` that another password may help. A wrong one passes for the right one now and then, and leaves
/// a member that looks damaged: such a member counts unless the password has opened another.
std::vector<std::size_t> locked_rows(arcview& w, const std::vector<std::size_t>& rows) {
    const std::shared_ptr<const OpenedArchive> opened = w.archives.library().open(w.ArchivePath);
    std::vector<std::size_t> locked;
    bool needed = false, fits = false;
    for (const std::size_t row : rows) {
        const WorkCopy* copy = w.archives.copies().of(row);
        if (!opened || copy == nullptr || !opened->archive.members()[row].is_encrypted()) continue;
        needed = needed || copy->result.needs_password;
        fits = fits || copy->result.verdict == Verdict::verified || copy->result.verdict == Verdict::whole;
        if (copy->result.needs_password || copy->result.verdict == Verdict::damaged) locked.push_back(row);
    }
    return needed || !fits ? locked : std::vector<std::size_t>();
}

void ask_for_passwords(arcview& w, std::vector<std::size_t> rows) {
    while (!(rows = locked_rows(w, rows)).empty() && ask_for_another_password(w)) {
        w.archives.ExtractRows(w.view(), rows);
    }
}

void unpack_all(arcview& w) {
    if (w.List1.count() == 0) return;
    note_new_directories(w);
    w.List1.selected = w.List1.count() - 1;
    if (!has_room(w, all_rows(w), w.context.session.WorkDir)) return;
    const ArchiveRun run(w, "Unpacking " + files::name_of(w.ArchivePath));
    w.archives.ExtractSelected(w.view());
    ask_for_passwords(w, all_rows(w));
}

void leave_main_window(arcview& w) {
    auto& main = w.context.windows.load<shell::swit>();
    main.Picture5.visible = false;
    main.visible = false;
    w.progress.text.clear();
}

/// Says in one box how many members are not as they should be, and what is wrong with the archive as a whole; the rows
/// have the reasons.
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
    w.context.platform.message(text, "Not all of the archive is whole");
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

void unpack_rows(arcview& w, std::vector<std::size_t> rows) {
    const Unwatched unwatched(w);
    const ArchiveRun run(w, "Unpacking");
    w.archives.ExtractRows(w.view(), rows);
    ask_for_passwords(w, std::move(rows));
    w.context.windows.load<shell::swit>().Picture5.visible = false;
    take_archive(w);
}

void reload_archive(arcview& w) {
    w.undo_states.clear();
    w.archives.ListContents(w.view());
    unpack_all(w);
    leave_main_window(w);
    take_archive(w);
}

void load_archive_window(shell::Context& context, NewZIP& archives) {
    context.windows.unload<arcview>();
    archives.library().read_names_in({});
    archives.library().new_encryption = archive::Encryption::traditional;
    auto& w = context.windows.load<arcview>(context, archives);
    if (!find_archive(w) || !list_archive(w)) {
        context.windows.unload<arcview>();
        return;
    }
    choose_work_dir(w);
    archives.copies().begin(context.session.WorkDir);
    unpack_all(w);
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
