#pragma once

#include "archive/container/archive.h"
#include "archive/extracting/extraction.h"
#include "files/file_stamp.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quill::zip {

/// The state of a member's file in the work directory.
enum class CopyState : std::uint8_t {
    none,       ///< No file was made for the member.
    untouched,  ///< It still has its original bytes.
    changed,    ///< Another program has written to it.
    gone        ///< It was deleted, renamed or replaced by something that is not a file.
};

/// The file that was made for one member.
struct WorkCopy {
    std::string member;   ///< the raw bytes of the member's name in the archive
    MemberResult result;  ///< the result of the extraction; `path` is the file's, below the work directory
    std::optional<files::FileStamp> stamp;  ///< when it was made; nullopt if there is no file
    std::uint32_t crc = 0;                  ///< of its original bytes
    bool made_here = true;                  ///< false: the user's own file that was added to the archive
    bool opened = false;                    ///< it was passed to another program
};

/// The files in the work directory that belong to members. Only files recorded here were made by the program;
/// everything else in the directory is the user's.
class WorkCopies {
  public:
    /// Starts with another archive, or another work directory: forgets all files and touches none.
    void begin(std::string directory);
    const std::string& directory() const { return directory_; }

    /// Records the result of an extraction, and the current state of the file.
    void record(const Archive& archive, const MemberResult& result);
    /// Records that the file at `path`, below the work directory, has exactly the bytes of the member called `name` in
    /// the archive.
    void record_copy(std::size_t member, const std::string& name, const std::string& path, bool made_here);
    void record_opened(std::size_t member);
    /// Records that the member in the archive now has the bytes of its file.
    void record_saved(std::size_t member);

    /// Renames the member's file to `path`, below the work directory, or to a free name of its series, but only if the
    /// file was made here, is untouched and was not passed to another program. Returns true if it was renamed.
    bool move(std::size_t member, const std::string& path);
    /// Adopts the paths of files that `moved` has renamed since this was copied from it.
    void follow(const WorkCopies& moved);

    /// Forgets the member's file, which stays on the disk.
    void forget(std::size_t member);
    /// Leaves the files at `paths`, below the work directory, to the user: they no longer belong to members.
    void leave_to_user(const std::set<std::string>& paths);

    /// Restores the earlier record `before`. Deletes untouched files made since then.
    void go_back_to(const WorkCopies& before);
    /// Assigns the files to the members of `archive` with the same names, whatever their numbers, after another program
    /// has changed it. Deletes untouched files of members that are gone, unless another program has them. Returns the
    /// changed ones, with their old numbers.
    std::vector<WorkCopy> match_again(const Archive& archive);
    /// Forgets the files of members that the archive no longer has at that number under that name.
    void keep_those_of(const Archive& archive);
    /// Handles the loss of these members: those after them get lower numbers. The files stay on the disk.
    void erase(const std::set<std::size_t>& members);

    /// Returns the member's record; nullptr if nothing was extracted for it.
    const WorkCopy* of(std::size_t member) const;
    /// Returns the absolute path of the member's file; empty if there is none.
    std::string path_of(std::size_t member) const;
    /// Checks the file: by its stamp, and by its bytes if the stamp alone does not decide.
    CopyState state_of(std::size_t member);
    /// Returns the members whose files were changed. `opened_only` checks only files passed to other programs.
    std::vector<std::size_t> changed(bool opened_only = false);

    /// Deletes the member's file if it was made here and is untouched. Returns true if it is gone.
    bool remove_untouched(std::size_t member);

    std::size_t count() const { return copies_.size(); }

  private:
    std::optional<WorkCopy>& at(std::size_t member);

    std::string directory_;
    std::vector<std::optional<WorkCopy>> copies_;  // by member number
};

}  // namespace quill::zip
