#pragma once

#include "archive/progress.h"
#include "files/descriptor.h"
#include "files/file_stamp.h"
#include "text/result.h"

#include <optional>
#include <string>

namespace quill::zip {

/// Locks an archive against other changes by this program, as long as this object lives. Changes by other programs are
/// only noticed.
class ArchiveLock {
  public:
    /// Locks the file at `path`, if there is one, and waits while another change has it: until `watch` returns false,
    /// or for a minute if it is empty. A file system without locks is not a failure. Fails with `unsupported` for a
    /// directory, a pipe or a device, with `access` for a write-protected file: a rename would replace these too.
    static Result<ArchiveLock> take(const std::string& path, const Watch& watch);

    /// Returns the stamp of the file when it was locked; nullopt if there was none.
    const std::optional<files::FileStamp>& stamp() const { return stamp_; }
    /// Returns true if the path still has that file with the same bytes, or still none.
    bool holds() const { return is_as_locked(files::stamp_of(path_)); }
    /// Returns true if `stamp` is of the locked file with the same bytes, or nullopt if no file was locked.
    bool is_as_locked(const std::optional<files::FileStamp>& stamp) const {
        return stamp && stamp_ ? stamp->same_bytes(*stamp_) : stamp == stamp_;
    }

  private:
    explicit ArchiveLock(std::string path) : path_(std::move(path)) {}
    bool try_lock();

    std::string path_;
    std::optional<files::FileStamp> stamp_;
    files::Descriptor fd_;
};

}  // namespace quill::zip
