#pragma once

#include "archive/progress.h"
#include "files/descriptor.h"
#include "files/file_stamp.h"
#include "text/result.h"

#include <optional>
#include <string>

namespace quill::zip {

/// Keeps other changes of this program away from an archive, as long as this lives. Other programs are only noticed.
class ArchiveLock {
  public:
    /// Locks the file at `path`, if there is one, and waits where another change has it: until `watch` says no, or a
    /// minute where it is empty. A file system without locks is no failure. Fails with `unsupported` for a directory, a
    /// pipe or a device, with `access` for a file that is write-protected: a rename would replace these too.
    static Result<ArchiveLock> take(const std::string& path, const Watch& watch);

    /// The file as it was; nullopt where there was none.
    const std::optional<files::FileStamp>& stamp() const { return stamp_; }
    /// Returns true where the path still has that file with the same bytes, or still none.
    bool holds() const { return is_as_locked(files::stamp_of(path_)); }
    /// Returns true where `stamp` is of the locked file with the same bytes, or of none as the lock is.
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
