#include "zip/archive_actions.h"

#include "codec/recovery/disguise.h"
#include "decoder/opening.h"
#include "encoder/file_chooser.h"
#include "files/directory.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/count.h"
#include "text/printable.h"
#include "zip/additions.h"
#include "zip/archive_document.h"
#include "zip/archive_loading.h"
#include "zip/archive_password.h"
#include "zip/archive_rows.h"
#include "zip/foreign_changes.h"
#include "zip/member_rows.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <string_view>

namespace quill::zip {
namespace {

constexpr std::size_t many_to_open = 5;

/// Name endings that are opened as text.
constexpr std::array<std::string_view, 3> text_endings = {"txt", ".me", "diz"};

bool is_text(std::string_view name) {
    return std::any_of(text_endings.begin(), text_endings.end(),
                       [&](std::string_view ending) { return text::ends_with_ignoring_case(name, ending); });
}

std::string reason_for_no_file(const RowDetails& details) {
    return details.problems.empty() ? "it could not be unpacked" : details.problems.front();
}

/// Returns the path of the row's file, extracting it where there is none; empty, with the reason reported, where that
/// fails.
std::string ready_file(arcview& w, std::size_t row) {
    WorkCopies& copies = w.archives.copies();
    const CopyState state = copies.state_of(row);
    const bool is_missing = state == CopyState::none || state == CopyState::gone;
    if (is_missing && !unpack_rows(w, {row})) return {};
    const std::string path = copies.path_of(row);
    if (!path.empty() && files::exists(path)) return path;
    const RowDetails details = row_details(w, row);
    w.context.platform.warn(text::printable(details.name) + ": " + reason_for_no_file(details) + ".");
    return {};
}

/// Warns about a program disguised by its name, and returns true if there is such a warning.
bool is_disguised(arcview& w, const std::string& name) {
    const std::optional<Problem> disguise = codec::disguise_of(name, 0);
    if (!disguise) return false;
    w.context.platform.warn(text::printable(name) + ": " + disguise->text + ". It is not opened.");
    return true;
}

/// Makes a file that can't be saved into the archive read-only, so that programs show it.
void protect_where_nothing_can_be_saved(const arcview& w, const std::string& path) {
    const bool can_be_saved = w.listed && w.listed->archive.is_sound() && files::is_writable(w.ArchivePath);
    if (can_be_saved) return;
    std::error_code ignored;
    using std::filesystem::perms;
    std::filesystem::permissions(path, perms::owner_write | perms::group_write | perms::others_write,
                                 std::filesystem::perm_options::remove, ignored);
}

void open_row(arcview& w, std::size_t row) {
    const RowDetails details = row_details(w, row);
    if (details.directory || is_disguised(w, details.name)) return;
    const std::string path = ready_file(w, row);
    if (path.empty() || !decoder::may_open(w.context, path)) return;
    protect_where_nothing_can_be_saved(w, path);
    w.archives.copies().record_opened(row);
    platform::Opener& opener = w.context.platform.opener();
    if (is_text(details.name)) {
        opener.edit_text(path);
    } else if (text::ends_with_ignoring_case(details.name, ".zip")) {
        opener.start("quillbright", {"/unp", path}, w.context.session.WorkDir);
    } else {
        opener.open_with_default(path);
    }
}

/// Returns the selected rows that have a usable name.
std::vector<std::size_t> named_rows(const arcview& w) {
    std::vector<std::size_t> rows = w.List1.chosen_rows();
    std::erase_if(rows, [&](std::size_t row) {
        const std::string name = row < w.List1.count() ? name_in_row(w.List1.items()[row]) : std::string();
        return name.empty() || name == " " || name.starts_with('*');
    });
    return rows;
}

/// Unpacks the added members that are in directories; the others' files were copied.
void unpack_added(arcview& w, const std::vector<ZipItem>& items) {
    std::set<std::string_view> names;
    for (const ZipItem& item : items) names.insert(item.member);
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; w.listed && row < w.listed->archive.members().size(); ++row) {
        const std::string_view name = w.listed->archive.members()[row].name;
        const bool is_new = names.contains(name.substr(0, name.find_last_not_of('/') + 1));
        if (is_new && w.archives.copies().of(row) == nullptr) rows.push_back(row);
    }
    if (!rows.empty()) unpack_rows(w, rows);
}

/// Returns "letter.txt", or "3 files".
std::string names_of(arcview& w, const std::vector<std::size_t>& rows) {
    return rows.size() == 1 ? text::printable(row_details(w, rows.front()).name) : text::counted(rows.size(), "file");
}

}  // namespace

void OpenMember(arcview& w) {
    const std::vector<std::size_t> rows = named_rows(w);
    if (rows.size() > many_to_open &&
        !w.context.platform.ask({.text = "Open " + text::counted(rows.size(), "file") + " at once?",
                                 .no_is_default = true,
                                 .question_mark = true})) {
        return;
    }
    for (const std::size_t row : rows) open_row(w, row);
}

void RemoveMember(arcview& w) {
    const std::vector<std::size_t> rows = w.List1.chosen_rows();
    if (rows.empty()) return;
    const bool yes =
        w.context.platform.ask({.text = "Are you sure you wish to remove " + names_of(w, rows) + " from this ZIP file?",
                                .title = "Warning: file erasure alert",
                                .no_is_default = true});
    if (!yes) return;
    make_change(w, "removal of " + names_of(w, rows), [&] {
        w.archives.DeleteSelectedItems(w.view());
        return static_cast<std::int16_t>(w.archives.failure().text.empty() ? library_success : library_io);
    });
}

void zippadd(arcview& w) {
    encoder::cmdg& chooser =
        encoder::show_chooser(w.context, encoder::ChooserMode::add_to_archive, files::dir_of(w.ArchivePath));
    chooser.routes.add_chosen_files = [&w] {
        w.archives.AddChosenFiles(w.view(), [&w](const std::vector<std::string>& paths) { add_files(w, paths); });
    };
    chooser.routes.show_archive_rows = [&w] { ziconize(w); };
    chooser.Command2.click = chooser.close = [&w] { w.context.windows.unload<encoder::cmdg>(); };
}

void ziconize(arcview& w) {
    RenderRows(w);
}

void add_files(arcview& w, const std::vector<std::string>& paths) {
    const Unwatched unwatched(w);
    if (paths.empty() || !archive_is_ours(w)) return;
    Additions additions = collect_additions(paths, w.ArchivePath);
    report_left_out(w.context.platform, additions);
    add_items(w, std::move(additions.items));
}

void add_items(arcview& w, std::vector<ZipItem> items) {
    if (!settle_names(w.context.platform, w.listed.get(), items) || items.empty() || !is_ready_to_add(w)) return;
    const std::string what =
        items.size() == 1 ? text::printable(files::name_of(items.front().member)) : text::counted(items.size(), "file");
    const bool added = make_change(w, "addition of " + what, [&] { return w.archives.add_items(w.view(), items); });
    if (added) unpack_added(w, items);
}

void show_member_pictures(arcview& w) {
    std::vector<std::string> paths;
    for (std::size_t row = 0; row < w.List1.count(); ++row) {
        std::string path = w.archives.copies().path_of(row);
        if (!path.empty()) paths.push_back(std::move(path));
    }
    shell::show_pictures(w.context.platform, w.context.routes, paths);
}

Handed files_to_hand_out(arcview& w) {
    Handed handed;
    for (const std::size_t row : w.List1.chosen_rows()) {
        std::string path = w.archives.copies().path_of(row);
        if (path.empty() || !files::exists(path)) {
            handed.without_file.push_back(row);
            continue;
        }
        w.archives.copies().record_opened(row);
        handed.paths.push_back(std::move(path));
    }
    return handed;
}

void report_without_file(arcview& w, const std::vector<std::size_t>& rows) {
    constexpr std::size_t most_lines = 8;
    if (rows.empty()) return;
    std::string text = text::counted(rows.size(), "selected member") +
                       (rows.size() == 1 ? " was left out: it has no file.\n" : " were left out: they have no file.\n");
    for (std::size_t i = 0; i < std::min(rows.size(), most_lines); ++i) {
        const RowDetails details = row_details(w, rows[i]);
        text += "\n" + text::printable(details.name) + ": " + reason_for_no_file(details) + ".";
    }
    if (rows.size() > most_lines) text += "\nand " + text::counted(rows.size() - most_lines, "other") + ".";
    w.context.platform.warn(text, "Not all of the files");
}

}  // namespace quill::zip
