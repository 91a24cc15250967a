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

/// What has become of a member's file in the work directory since it was made.
enum class CopyState : std::uint8_t {
    none,       ///< No file was made for the member.
    untouched,  ///< It has the bytes that it was made with.
    changed,    ///< Another program has written to it.
    gone        ///< It was deleted, renamed or replaced by something that is not a file.
};

/// The file that was made for one member.
struct WorkCopy {
    std::string member;                     ///< the bytes of the member's name in the archive
    MemberResult result;                    ///< how the extraction went; `path` is the file's, below the work directory
    std::optional<files::FileStamp> stamp;  ///< as it was made; nullopt where there is no file
    std::uint32_t crc = 0;                  ///< of its bytes as it was made
    bool made_here = true;                  ///< false: the user's own file, which was added to the archive
    bool opened = false;                    ///< it was handed to another program
};

/// Which file in the work directory belongs to which member. Only files that are recorded here were made by the
/// program; everything else in the directory is the user's.
class WorkCopies {
  public:
    /// Another archive, or another work directory: forgets all files and touches none.
    void begin(std::string directory);
    const std::string& directory() const { return directory_; }

    /// Records the outcome of an extraction, and the file as it is now.
    void record(const Archive& archive, const MemberResult& result);
    /// Records that the file at `path`, below the work directory, has the bytes of the member that is called `name` in
    /// the archive, byte by byte.
    void record_copy(std::size_t member, const std::string& name, const std::string& path, bool made_here);
    void record_opened(std::size_t member);
    /// Records that the member in the archive now has the bytes of its file.
    void record_saved(std::size_t member);

    /// Renames the member's file to `path`, below the work directory, or to a free name like it. Does so only where the
    /// file was made here, is untouched and was not handed to another program. Returns whether the file was renamed.
    bool move(std::size_t member, const std::string& path);
    /// Takes over the paths of files that `moved` has renamed since this was copied from it.
    void follow(const WorkCopies& moved);

    /// Forgets the member's file, which stays on the disk.
    void forget(std::size_t member);
    /// Leaves the files at `paths`, below the work directory, to the user: they are no member's any more.
    void leave_to_user(const std::set<std::string>& paths);

    /// Goes back to what was recorded earlier. Files made since then are deleted where they are untouched.
    void go_back_to(const WorkCopies& before);
    /// Gives the files to the members of `archive` that have the names, whatever their numbers: another program has
    /// changed it. Untouched files of members that are gone are deleted, unless another program has them. Returns those
    /// that were changed, with the numbers from before.
    std::vector<WorkCopy> match_again(const Archive& archive);
    /// Forgets the files of members that the archive no longer has at that number under that name.
    void keep_those_of(const Archive& archive);
    /// The archive has lost these members: those after them get lower numbers. The files stay on the disk.
    void erase(const std::set<std::size_t>& members);

    /// nullptr where nothing was extracted for the member.
    const WorkCopy* of(std::size_t member) const;
    /// The absolute path of the member's file; empty where there is none.
    std::string path_of(std::size_t member) const;
    /// Looks at the file: by its stamp, and by its bytes where the stamp alone does not decide.
    CopyState state_of(std::size_t member);
    /// The members whose files were changed. `opened_only` looks at no file but those handed to other programs.
    std::vector<std::size_t> changed(bool opened_only = false);

    /// Deletes the member's file where it was made here and is untouched. Returns whether it is gone.
    bool remove_untouched(std::size_t member);

    std::size_t count() const { return copies_.size(); }

  private:
    std::optional<WorkCopy>& at(std::size_t member);

    std::string directory_;
    std::vector<std::optional<WorkCopy>> copies_;  // by member number
};

}  // namespace quill::zip
