#include "zip/new_zip.h"

#include "encoder/file_chooser.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"
#include "shell/main_window.h"
#include "shell/routes.h"
#include "text/ascii.h"
#include "text/utf8.h"
#include "zip/member_rows.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace quill::zip {
namespace {

constexpr auto no_archive_name = "No ZIP File Selected";
constexpr auto save_failed =
    "  No file was select to save changes to. Read the Help file on how to save changes to files within a ZIP file.";
constexpr auto large_question =
    ". Small archives that unpack to so much are made to fill a disk. Do you want to extract it all the same?";
constexpr std::size_t rows_worth_a_progress = 20;

}  // namespace

std::size_t CountSelected(const controls::ListBox& list) {
    return list.chosen_rows().size();
}

NewZIP::NewZIP(shell::Context& context, MakeOutput make_output) : context_(context), library_(std::move(make_output)) {
    library_.progress = [this](const Progress& done) { return !progress || progress(done); };
    library_.confirm_large = [this](const Expansion& expansion) {
        return context_.platform.ask({.text = "This archive unpacks to " + expansion.text() + large_question,
                                      .title = "Large archive",
                                      .no_is_default = true,
                                      .question_mark = true});
    };
}

void NewZIP::InitZipRecord(ZipCommand& record) {
    record = {};
    zip_strings_ = {};
    status_block_ = {};
}

void NewZIP::InitUnzipRecord(UnzipCommand& record) {
    record = {};
    unzip_strings_ = {};
    status_block_ = {};
}

std::string NewZIP::archive_path() const {
    return files::join(context_.session.SelectedDir, context_.session.SelectedFile);
}

std::string NewZIP::path_in_work_dir(const std::string& name) const {
    return files::join(context_.session.WorkDir, name);
}

void NewZIP::status(int percent, const std::string& text) const {
    if (ZipStatus) ZipStatus(0, percent, text);
}

/// Does the common part of all additions. `password`, if set, takes precedence over ZipPassword.
std::int16_t NewZIP::call_add(std::vector<ZipItem> items, bool keep_paths, const std::string& password) {
    ZipCommand command;
    InitZipRecord(command);
    zip_strings_.zipFile = archive_path();
    command.noDirectoryNames = keep_paths ? flag_off : flag_on;
    command.compressionLevel = 5;
    command.function = zip_add;
    status(0, "Adding " + std::to_string(items.size()) + "Item(s)");
    zip_strings_.itemList = std::move(items);
    if (!context_.session.ZipPassword.empty()) PasswordOn = -1;
    command.usePassword = PasswordOn;
    if (PasswordOn == -1) zip_strings_.password = password.empty() ? context_.session.ZipPassword : password;
    const std::int16_t result = library_.dzipVB(command, zip_strings_, status_block_);
    failure_ = library_.last_error();
    return result;
}

std::int16_t NewZIP::AddWizardItem(bool keep_paths) {
    std::vector<ZipItem> items;
    for (const std::string& path : context_.windows.load<shell::swit>().List4.items()) items.push_back({path});
    return call_add(std::move(items), keep_paths);
}

std::int16_t NewZIP::AddBookItems(const controls::ListBox& pages, const controls::ListBox& chosen, bool keep_paths) {
    if (chosen.count() == 0) return library_success;
    std::vector<ZipItem> items;
    for (const std::string& path : pages.items()) items.push_back({path});
    return call_add(std::move(items), keep_paths);
}

void NewZIP::AddChosenFiles(ArchiveView view, const std::function<void(const std::vector<std::string>&)>& add) {
    std::vector<std::string> paths;
    if (const auto* chooser = context_.windows.loaded<encoder::cmdg>()) {
        for (const std::size_t row : chooser->File1.chosen_rows()) {
            paths.push_back(files::join(chooser->Dir1.path, chooser->File1.items().at(row)));
        }
    }
    add(paths);
    enter_archive_directory(view);
    context_.windows.unload<encoder::cmdg>();
}

std::int16_t NewZIP::add_items(ArchiveView view, const std::vector<ZipItem>& items) {
    const std::int16_t result = call_add(items, false);
    if (result == library_success) copy_to_work_dir(items);
    ListContents(view);
    return result;
}

/// Puts a copy of each added file beside the extracted ones. Skips those that can't be copied.
void NewZIP::copy_to_work_dir(const std::vector<ZipItem>& items) {
    const std::shared_ptr<const OpenedArchive> opened = library_.open(archive_path());
    if (!opened) return;
    use_work_dir();
    const std::vector<Member>& members = opened->archive.members();
    std::unordered_map<std::string_view, std::size_t> rows;
    for (std::size_t row = 0; row < members.size(); ++row) rows[members[row].name] = row;
    for (const ZipItem& item : items) {
        const std::string name = item.member.empty() ? text::to_utf8(files::name_of(item.name)) : item.member;
        const auto named = rows.find(name);
        if (item.number && !files::same_file(copies_.path_of(*item.number), item.name)) {
            copies_.remove_untouched(*item.number);  // it differs from the archive's current member
            copies_.forget(*item.number);
        }
        if (item.kind != EntryKind::file || name.find('/') != std::string::npos || named == rows.end()) continue;
        const std::size_t row = item.number.value_or(named->second);
        const std::string path = put_copy(item.name, row, opened->paths[row].path);
        const bool made_here = !files::same_file(path_in_work_dir(path), item.name);
        if (!path.empty()) copies_.record_copy(row, std::string(members[row].raw_name), path, made_here);
    }
}

/// Copies `file` to `path` below WorkDir and returns the resulting path: a different one if a file that is not the
/// member's untouched copy has that name. Empty if it can't be copied.
std::string NewZIP::put_copy(const std::string& file, std::size_t row, const std::string& path) {
    const std::string target = path_in_work_dir(path);
    if (files::same_file(target, file)) return path;
    const std::string old = copies_.path_of(row);
    if (!old.empty() && !files::same_file(old, file)) copies_.remove_untouched(row);
    const Result<files::MappedFile> source = files::MappedFile::open(file);
    Result<files::AtomicFile> copy = files::AtomicFile::create(target);
    if (!source || !copy) return {};
    copy->write(source->bytes());
    const Result<std::string> published = copy->publish(files::OnCollision::choose_name);
    return published ? files::join(files::dir_of(path), files::name_of(*published)) : std::string();
}

/// Makes the archive's directory the current one. `Label21` may show the archive's path in lower case.
void NewZIP::enter_archive_directory(ArchiveView view) {
    const std::string path = archive_path();
    const bool is_shown = text::equal_ignoring_case(view.Label21.text, path);
    files::change_directory(files::dir_of(is_shown ? path : view.Label21.text));
}

void NewZIP::SaveChangedFile(ArchiveView view, std::optional<std::size_t> row, const std::string& password) {
    const std::int16_t result = row ? save_copies(view, {*row}, password) : std::int16_t{library_bad_call};
    if (result == library_cancelled) return;
    if (result != library_success) {
        context_.platform.warn(save_failed);
        return;
    }
    enter_archive_directory(view);
}

std::int16_t NewZIP::save_copies(ArchiveView view, const std::vector<std::size_t>& rows, const std::string& password) {
    failure_ = {ErrorCode::not_found, 0, "there is no file to save"};
    if (!library_.open(archive_path())) return library_bad_call;
    forget_copies_of_others();
    std::vector<ZipItem> items;
    for (const std::size_t row : rows) {
        const std::string copy = extracted_name(row);
        if (copy.empty()) return library_bad_call;
        items.push_back({path_in_work_dir(copy), row});
        items.back().keeps_protection = password.empty();
    }
    const std::int16_t result = call_add(std::move(items), false, password);
    if (result != library_success) return result;
    for (const std::size_t row : rows) copies_.record_saved(row);
    ListContents(view);
    return result;
}

/// Drops the copies of rows whose members have changed since they were extracted: another program has changed the
/// archive.
void NewZIP::forget_copies_of_others() {
    const std::shared_ptr<const OpenedArchive> opened = library_.open(archive_path());
    if (opened) copies_.keep_those_of(opened->archive);
}

/// Tracks the copies in WorkDir: another directory begins without any.
void NewZIP::use_work_dir() {
    if (copies_.directory() != context_.session.WorkDir) copies_.begin(context_.session.WorkDir);
}

void NewZIP::DeleteSelectedItems(ArchiveView view) {
    failure_ = {};
    InitZipRecord(delete_command_);
    InitUnzipRecord(unzip_command_);
    zip_strings_.zipFile = unzip_strings_.zipFile = archive_path();
    const std::size_t count = CountSelected(view.List1);
    if (count == 0 || view.List1.count() == 0) return;
    unzip_command_.function = unzip_count;
    if (library_.dunzipVB(unzip_command_, unzip_strings_, item_info_, status_block_) != library_success) return;
    for (const std::size_t row : view.List1.chosen_rows()) {
        unzip_command_.function = unzip_member;
        unzip_command_.itemIndex = static_cast<std::int32_t>(row);
        const std::int16_t result = library_.dunzipVB(unzip_command_, unzip_strings_, item_info_, status_block_);
        // The row is no longer the member's: another program changed the archive.
        const bool is_shown = result == library_success && member_row(item_info_) == view.List1.items().at(row);
        if (is_shown) zip_strings_.itemList.push_back({item_info_.fileName, row});
    }
    status(0, "Deleting " + std::to_string(count) + " item(s)");
    delete_command_.function = zip_delete;
    delete_command_.reserved7 = 0;
    const std::vector<ZipItem> deleted = zip_strings_.itemList;
    const std::int16_t result = deleted.empty() ? static_cast<std::int16_t>(library_success)
                                                : library_.dzipVB(delete_command_, zip_strings_, status_block_);
    failure_ = library_.last_error();
    status(100, result == library_success ? std::string() : library_error_text(result));
    if (result == library_success) {
        std::set<std::size_t> gone;
        for (const ZipItem& item : deleted) gone.insert(*item.number);
        copies_.erase(gone);
    }
    ListContents(view);
}

/// Reads the directory with function 1 and then function 2 for each member.
NewZIP::Listing NewZIP::read_listing() {
    Listing listing;
    InitUnzipRecord(unzip_command_);
    unzip_strings_.zipFile = archive_path();
    unzip_command_.function = unzip_count;
    item_info_ = {};
    const bool has_bytes = files::file_size(unzip_strings_.zipFile).value_or(1) > 0;
    if (has_bytes && library_.dunzipVB(unzip_command_, unzip_strings_, item_info_, status_block_) != library_success) {
        unzip_strings_.zipFile.clear();
        return listing;
    }
    listing.cleared = true;
    const auto count = static_cast<std::size_t>(unzip_command_.itemCount);
    listing.rows.reserve(count);
    do {
        unzip_command_.function = unzip_next;
        if (library_.dunzipVB(unzip_command_, unzip_strings_, item_info_, status_block_) != library_success) {
            return listing;
        }
        listing.rows.push_back(member_row(item_info_));
        listing.total += static_cast<std::uint64_t>(item_info_.uncompressedSize);
        listing.encrypted = listing.encrypted || (item_info_.attributes & attribute_encrypted) != 0;
        if (count > rows_worth_a_progress) status(static_cast<int>(listing.rows.size() * 100 / count), {});
    } while (listing.rows.size() < count);
    listing.reached_end = true;
    return listing;
}

bool NewZIP::ListContents(ArchiveView view) {
    const std::string& name = context_.session.SelectedFile;
    if (name.empty() || name == no_archive_name) {
        view.List1.clear();
        return false;
    }
    Listing listing = read_listing();
    if (!listing.cleared) return false;
    forget_copies_of_others();
    const std::size_t count = listing.rows.size();
    view.List1.clear();  // its selection too
    view.List1.assign(std::move(listing.rows));
    if (count != 0) {
        view.Label20.text = grouped(listing.total);
        if (const auto size = files::file_size(archive_path())) view.Label18.text = grouped(*size);
    }
    if (!listing.reached_end) return false;
    status(100, std::to_string(count) + " Total Items, " + grouped(listing.total) + " Bytes Total");
    status(100, "0 Item(s) Selected");
    return true;
}

bool NewZIP::ReportContents(Form1& window) {
    if (context_.session.SelectedFile.empty() || context_.session.SelectedFile == no_archive_name) {
        window.List1.clear();
        return false;
    }
    Listing listing = read_listing();
    if (listing.encrypted) context_.session.ZipEncrypted = true;
    if (!listing.cleared) return false;
    const std::size_t count = listing.rows.size();
    window.List1.assign(std::move(listing.rows));
    if (count != 0) {
        window.Label1.text = grouped(listing.total);
        if (const auto size = files::file_size(archive_path())) window.Label2.text = grouped(*size);
    }
    if (listing.reached_end) window.Label5.text = std::to_string(count) + " items";
    return listing.reached_end;
}

void NewZIP::show_progress(ArchiveView view, const Progress& done) {
    auto& main = context_.windows.load<shell::swit>();
    const double part = done.bytes == 0 ? static_cast<double>(done.members_done) / static_cast<double>(done.members)
                                        : static_cast<double>(done.bytes_done) / static_cast<double>(done.bytes);
    main.Picture5.visible = true;
    view.percent.text = std::to_string(static_cast<int>(part * 100)) + "%";
    main.Picture6.left = static_cast<int>(part * main.Picture5.width);
    context_.platform.repaint(main);
}

std::int16_t NewZIP::ExtractSelected(ArchiveView view) {
    const std::size_t wanted = CountSelected(view.List1), rows = view.List1.count();
    if (wanted == 0 || rows == 0) return library_success;
    status(0, "Extracting " + std::to_string(wanted) + " item(s)");
    view.List1.selected = rows - 1;
    std::vector<std::size_t> all(rows);
    std::iota(all.begin(), all.end(), std::size_t{0});
    const std::int16_t result = ExtractRows(view, all);
    show_progress(view, {rows, rows, 1, 1});
    status(100, {});
    files::change_directory(context_.session.WorkDir);
    return result;
}

std::int16_t NewZIP::ExtractRows(ArchiveView view, const std::vector<std::size_t>& rows,
                                 const std::optional<std::string>& password) {
    InitUnzipRecord(unzip_command_);
    unzip_strings_.zipFile = archive_path();
    unzip_command_.option1 = unzip_command_.option2 = unzip_command_.option3 = 0;
    unzip_strings_.destinationDir = context_.session.WorkDir;
    forget_copies_of_others();
    use_work_dir();
    unzip_strings_.password = password.value_or(context_.session.ZipPassword);
    PasswordOn = unzip_strings_.password.empty() ? 0 : -1;
    unzip_command_.usePassword = PasswordOn;
    unzip_command_.function = unzip_extract;
    for (const std::size_t row : rows) {
        copies_.remove_untouched(row);
        unzip_strings_.itemList.push_back({name_in_row(view.List1.items().at(row)), row});
    }
    library_.progress = [&](const Progress& done) {
        show_progress(view, done);
        return !progress || progress(done);
    };
    const std::int16_t result = library_.dunzipVB(unzip_command_, unzip_strings_, item_info_, status_block_);
    failure_ = library_.last_error();
    library_.progress = [this](const Progress& done) { return !progress || progress(done); };
    const std::shared_ptr<const OpenedArchive> opened = library_.open(archive_path());
    if (!opened) return result;
    for (const MemberResult& extracted : library_.last_extraction()) copies_.record(opened->archive, extracted);
    return result;
}

std::string NewZIP::extracted_name(std::size_t row) const {
    const WorkCopy* copy = copies_.of(row);
    return copy != nullptr ? copy->result.path : std::string();
}

void provide_contents(shell::Context& context, NewZIP& new_zip) {
    context.routes.report_contents = [&context, &new_zip] {
        // This list is never shown: only ZipEncrypted is needed.
        Form1 unseen(context);
        new_zip.ReportContents(unseen);
    };
    context.routes.show_contents = [&context, &new_zip] {
        context.windows.unload<Form1>();  // what it shows is of another archive
        auto& window = context.windows.load<Form1>(context);
        new_zip.ReportContents(window);
        window.caption = context.session.SelectedFile;
        window.visible = true;
    };
}

}  // namespace quill::zip
