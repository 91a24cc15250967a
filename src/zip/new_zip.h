#pragma once

#include "archive/library/library.h"
#include "controls/control.h"
#include "shell/session.h"
#include "zip/contents_window.h"
#include "zip/work_copies.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quill::zip {

/// The controls of the archive window that the operations read and fill, and those that show progress.
struct ArchiveView {
    controls::ListBox& List1;  // all rows
    controls::Label& Label18;  // size of the archive
    controls::Label& Label20;  // size of all members, uncompressed
    controls::Label& Label21;  // path of the archive
    controls::Label& percent;  // progress in words: `Label13` of the main window
};

/// Counts the selected rows of a list.
std::size_t CountSelected(const controls::ListBox& list);

/// The archive operations: they read their input from the shared variables and the windows' lists, and put their
/// results there. One instance for the process.
class NewZIP {
  public:
    /// `context` must outlive it.
    explicit NewZIP(shell::Context& context, MakeOutput make_output = output_beside);

    /// Fills the rows and sizes of the archive window. Returns true if the list was read to its end.
    bool ListContents(ArchiveView view);
    /// Does the same for the contents window; sets ZipEncrypted if a member is encrypted.
    bool ReportContents(Form1& window);

    /// Adds the rows of `List4` of the main window; `keep_paths` stores their directories too.
    std::int16_t AddWizardItem(bool keep_paths);
    /// Adds the rows of `pages`, unless `chosen` is empty.
    std::int16_t AddBookItems(const controls::ListBox& pages, const controls::ListBox& chosen, bool keep_paths);
    /// Passes the paths of the files selected in the chooser to `add` and unloads the chooser.
    void AddChosenFiles(ArchiveView view, const std::function<void(const std::vector<std::string>&)>& add);
    /// Adds `items`, copies the files that are not in a directory of the archive to WorkDir, and lists the archive
    /// again.
    std::int16_t add_items(ArchiveView view, const std::vector<ZipItem>& items);
    /// Puts WorkDir's copy of member number `row` back into the archive. `password` is used if the member had one; an
    /// empty one means the earlier one.
    void SaveChangedFile(ArchiveView view, std::optional<std::size_t> row, const std::string& password);
    /// Does the same for several rows, in one change of the archive; reports no failure.
    std::int16_t save_copies(ArchiveView view, const std::vector<std::size_t>& rows, const std::string& password);
    void DeleteSelectedItems(ArchiveView view);
    /// Returns why the last addition, save, removal or extraction failed as a whole; an empty text if it did not.
    const Error& failure() const { return failure_; }
    /// Extracts all members into WorkDir and makes it the current directory. Shows its progress on the main window.
    std::int16_t ExtractSelected(ArchiveView view);
    /// Extracts the members of `rows` into WorkDir. An existing file stays, and the member's gets a free name, unless
    /// it is the untouched copy of an earlier extraction. Uses `password`, or else ZipPassword.
    std::int16_t ExtractRows(ArchiveView view, const std::vector<std::size_t>& rows,
                             const std::optional<std::string>& password = {});

    /// Returns the files in WorkDir that were made for the members.
    WorkCopies& copies() { return copies_; }
    /// Returns the path of the copy of member number `row` below WorkDir; empty if there is none.
    std::string extracted_name(std::size_t row) const;

    /// Between these two, additions are written together; the first operation of another kind ends it too.
    void begin_adding() { library_.begin_adding(); }
    std::int16_t end_adding() { return library_.end_adding(); }

    ZipLibrary& library() { return library_; }

    /// Is called periodically by every operation that reads or writes members; returns false to stop it. A stopped
    /// operation leaves the archive unchanged; files extracted by then stay.
    Watch progress;

    /// Shows the book whose members are in WorkDir, instead of its archive window. May be empty.
    controls::Action show_book;

    /// The only hook for a status line.
    std::function<void(int pane, int percent, const std::string& text)> ZipStatus;
    std::function<void()> ZipStatusClear;

  private:
    struct Listing {
        bool reached_end = false;
        bool cleared = false;  // the rows replace those shown
        std::vector<std::string> rows;
        std::uint64_t total = 0;
        bool encrypted = false;
    };

    void InitZipRecord(ZipCommand& record);
    void InitUnzipRecord(UnzipCommand& record);
    std::string archive_path() const;
    std::string path_in_work_dir(const std::string& name) const;
    void status(int percent, const std::string& text) const;
    std::int16_t call_add(std::vector<ZipItem> items, bool keep_paths, const std::string& password = {});
    Listing read_listing();
    void enter_archive_directory(ArchiveView view);
    void copy_to_work_dir(const std::vector<ZipItem>& items);
    std::string put_copy(const std::string& file, std::size_t row, const std::string& path);
    void forget_copies_of_others();
    void use_work_dir();
    void show_progress(ArchiveView view, const Progress& done);

    shell::Context& context_;
    ZipLibrary library_;
    ZipCommand delete_command_;
    UnzipCommand unzip_command_;
    ZipStrings zip_strings_;
    UnzipStrings unzip_strings_;
    ZipItemInfo item_info_;
    ZipStatusBlock status_block_;
    std::int16_t PasswordOn = 0;
    WorkCopies copies_;
    Error failure_;
};

/// Fills the main window's routes that list archives: the contents window and the check for encrypted members. Both
/// arguments must outlive the routes' last call.
void provide_contents(shell::Context& context, NewZIP& new_zip);

}  // namespace quill::zip
