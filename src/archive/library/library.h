#pragma once

#include "archive/changing/archive_change.h"
#include "archive/extracting/extraction.h"
#include "archive/library/library_records.h"
#include "files/file_stamp.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quill::zip {

/// The results of the entry points: 0 for success, each other number the index of its text.
enum LibraryResult : std::int16_t {
    library_success = 0,
    library_no_more_members = 1,  ///< function 2 behind the last member, function 7 on a number that is none
    library_not_found = 2,        ///< the archive or a file to add does not exist
    library_no_archive = 3,       ///< the file is no ZIP file
    library_access = 4,           ///< the system refused
    library_disk_full = 5,
    library_io = 6,           ///< reading or writing failed, or the check of the new archive did
    library_unsupported = 7,  ///< a damaged archive was to be changed, or something that is no file was to be added
    library_bad_call = 8,     ///< a function code or an item that makes no sense
    library_damaged = 9,      ///< a member could be extracted in part or not at all
    library_password = 10,    ///< a member needs a password, or another one
    library_cancelled = 11    ///< `progress` has said no
};

/// "ZIP error: " and the text of `result`; the text is empty for a number that is no result.
std::string library_error_text(std::int16_t result);

/// An archive as it was when it was read, and where its members go.
struct OpenedArchive {
    Archive archive;
    MemberPaths paths;
};

/// The ZIP library behind the two entry points. The archive last opened stays open: it is read anew only when the file
/// is another one (by path, inode, size and time of change).
class ZipLibrary {
  public:
    explicit ZipLibrary(MakeOutput make_output = output_beside);
    ~ZipLibrary();

    /// Adds to an archive or deletes from it (functions 4 and 2). A call's items take effect together or not at all.
    std::int16_t dzipVB(const ZipCommand& command, const ZipStrings& strings, ZipStatusBlock& status);

    /// Reads an archive's directory and extracts (functions 1, 2, 7 and 8). Files are written safely, as
    /// extract_members does.
    std::int16_t dunzipVB(UnzipCommand& command, UnzipStrings& strings, ZipItemInfo& info, ZipStatusBlock& status);

    /// From here on the additions to one archive wait: their files are read and compressed at once, the archive is
    /// written by `end_adding`, or before any other call needs it.
    void begin_adding() { adding_ = true; }
    /// Writes what waits. The additions are lost where it fails. Where all additions have failed, it writes nothing and
    /// fails as the first of them did.
    std::int16_t end_adding();

    /// The archive at `path`, from memory where the file has not changed. Nullptr where it can't be read.
    std::shared_ptr<const OpenedArchive> open(const std::string& path);

    /// From here on names without a sign of their character set are read in `code_page`; see Archive::read_names_in.
    void read_names_in(std::string_view code_page);

    /// Why the last call failed, for people; empty where it did not.
    const Error& last_error() const { return error_; }
    /// What became of the items of the last function 8.
    const std::vector<MemberResult>& last_extraction() const { return extraction_; }

    /// Called during additions, removals and function 8; false stops them with nothing half-written.
    Watch progress;
    /// Asked before function 8 writes more than the limits allow; see ExtractOptions.
    std::function<bool(const Expansion&)> confirm_large;
    Limits limits;
    /// How members with a password are encrypted in an archive that has none yet.
    archive::Encryption new_encryption = archive::Encryption::aes256;

  private:
    std::int16_t write_waiting();
    std::int16_t add(const ZipCommand& command, const ZipStrings& strings);
    std::int16_t remove(const ZipStrings& strings);
    std::int16_t tell_member(std::size_t number, ZipItemInfo& info);
    std::int16_t extract(const UnzipCommand& command, const UnzipStrings& strings);
    std::int16_t fail(const Error& error);
    Status add_items(ArchiveChange& change, const ZipCommand& command, const ZipStrings& strings);

    MakeOutput make_output_;
    std::shared_ptr<const OpenedArchive> opened_;
    std::string opened_path_;
    std::optional<files::FileStamp> opened_stamp_;
    std::string code_page_;  ///< empty: the one that fits best
    std::size_t next_member_ = 0;
    bool adding_ = false;
    std::optional<ArchiveChange> waiting_;
    std::string waiting_for_;             // the path that `waiting_` was begun for
    bool has_additions_ = false;          // whether `waiting_` has any
    std::optional<Error> first_failure_;  // of the additions to `waiting_`
    Error error_;
    std::vector<MemberResult> extraction_;
};

}  // namespace quill::zip
