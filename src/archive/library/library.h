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

/// The results of the entry points: 0 for success, any other number the index of its text.
enum LibraryResult : std::int16_t {
    library_success = 0,
    library_no_more_members = 1,  ///< function 2 after the last member, function 7 on an invalid number
    library_not_found = 2,        ///< the archive or a file to add does not exist
    library_no_archive = 3,       ///< the file is not a ZIP file
    library_access = 4,           ///< the system refused
    library_disk_full = 5,
    library_io = 6,           ///< reading or writing failed, or the check of the new archive did
    library_unsupported = 7,  ///< a change of a damaged archive, or an addition of something that is not a file
    library_bad_call = 8,     ///< an invalid function code or item
    library_damaged = 9,      ///< a member could be extracted only in part or not at all
    library_password = 10,    ///< a member needs a password, or a different one
    library_cancelled = 11    ///< `progress` returned false
};

/// Returns "ZIP error: " and the text of `result`; the text is empty for an unknown number.
std::string library_error_text(std::int16_t result);

/// An archive as read, and the paths of its members.
struct OpenedArchive {
    Archive archive;
    MemberPaths paths;
};

/// The ZIP library behind the two entry points. The last archive stays open: it is read again only if the file differs
/// (by path, inode, size and time of change).
class ZipLibrary {
  public:
    explicit ZipLibrary(MakeOutput make_output = output_beside);
    ~ZipLibrary();

    /// Adds to an archive or deletes from it (functions 4 and 2). A call's items take effect together or not at all.
    std::int16_t dzipVB(const ZipCommand& command, const ZipStrings& strings, ZipStatusBlock& status);

    /// Reads an archive's directory and extracts (functions 1, 2, 7 and 8). Files are written safely, as
    /// extract_members does.
    std::int16_t dunzipVB(UnzipCommand& command, UnzipStrings& strings, ZipItemInfo& info, ZipStatusBlock& status);

    /// Starts to collect the additions to one archive: their files are read and compressed at once, the archive is
    /// written by `end_adding`, or before any other call needs it.
    void begin_adding() { adding_ = true; }
    /// Writes the collected additions. They are lost if it fails. If all additions have failed, writes nothing and
    /// fails like the first of them.
    std::int16_t end_adding();

    /// Returns the archive at `path`, from memory if the file has not changed; nullptr if it can't be read.
    std::shared_ptr<const OpenedArchive> open(const std::string& path);

    /// Makes later reads use `code_page` for names that do not indicate their character set; see
    /// Archive::read_names_in.
    void read_names_in(std::string_view code_page);

    /// Returns why the last call failed, for people; empty if it did not.
    const Error& last_error() const { return error_; }
    /// Returns the results for the items of the last function 8.
    const std::vector<MemberResult>& last_extraction() const { return extraction_; }

    /// Is called during additions, removals and function 8; returns false to stop them with nothing half-written.
    Watch progress;
    /// Is asked before function 8 writes more than the limits allow; see ExtractOptions.
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
    std::string code_page_;  ///< empty: the best fit
    std::size_t next_member_ = 0;
    bool adding_ = false;
    std::optional<ArchiveChange> waiting_;
    std::string waiting_for_;             // the path of `waiting_`
    bool has_additions_ = false;          // whether `waiting_` has any
    std::optional<Error> first_failure_;  // of the additions to `waiting_`
    Error error_;
    std::vector<MemberResult> extraction_;
};

}  // namespace quill::zip
