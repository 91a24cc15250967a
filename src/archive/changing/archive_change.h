#pragma once

#include "archive/changing/archive_output.h"
#include "archive/changing/packing.h"
#include "archive/container/archive.h"
#include "archive/progress.h"
#include "text/result.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// One change of an archive, made of any number of additions and removals that take effect together.
///
/// Nothing happens to the archive before `finish`, which writes a new file beside it, copies the remaining members byte
/// by byte, reads the new file back and checks it, and gives it the archive's name: at every moment either the old
/// archive or the new one exists, complete. The remaining members keep their order; a replacement takes the place of
/// the old member. Other changes of the archive by this program wait until this one has ended.
class ArchiveChange {
  public:
    /// Opens the archive at `path`, or begins a new one if there is no file or an empty one. A link is followed, so
    /// that its target is changed. All long steps call `watch`, and fail with `cancelled` if it returns false. Fails
    /// with `bad_input` if the file is not an archive, with `unsupported` for a damaged one, which could only be
    /// changed by guessing, and for anything but a regular file, with `access` for a write-protected one. Names that do
    /// not indicate their character set are read in `code_page`, as in Archive::read_names_in.
    static Result<ArchiveChange> begin(const std::string& path, MakeOutput make_output = output_beside,
                                       Watch watch = {}, std::string_view code_page = {});

    ArchiveChange(ArchiveChange&&) noexcept;
    ArchiveChange& operator=(ArchiveChange&&) noexcept;
    ~ArchiveChange();

    /// Compresses the file at `file` to become the member `name`, for `put` or `replace`.
    Result<PackedMember> pack(const std::string& file, const std::string& name, const PackOptions& options);
    /// Does the same for the symbolic link at `path`, as a link.
    Result<PackedMember> pack_link(const std::string& path, const std::string& name, const PackOptions& options);
    /// Adds a packed member in place of the last one of exactly its name, or at the end.
    void put(PackedMember member, const PackOptions& options);
    /// Adds a packed member in place of a member of the old archive. REQUIRES: `has(old_member)`.
    void replace(std::size_t old_member, PackedMember member, const PackOptions& options);
    /// Returns true if the member of the old archive is still in the new one.
    bool has(std::size_t old_member) const;

    /// Does `pack` and `put`.
    Status add_file(const std::string& file, const std::string& name, const PackOptions& options);
    /// Adds the symbolic link at `path` as a link.
    Status add_link(const std::string& path, const std::string& name, const PackOptions& options);
    /// Adds the directory `name` (without a slash at its end) unless it exists.
    Status add_directory(const std::string& name, std::time_t modified);

    /// Removes members of the old archive, by their numbers. Fails with `bad_argument`, removing none, if one of them
    /// is missing or already removed.
    Status remove(const std::vector<std::size_t>& members);
    /// Returns the encryption of the old archive's last encrypted member; nullopt if there is none.
    std::optional<archive::Encryption> usual_encryption() const;
    /// Returns the members of the old archive.
    const std::vector<Member>& old_members() const;
    /// Returns the numbers of the remaining members called `name`.
    std::vector<std::size_t> find(std::string_view name) const;

    /// Returns the path of the archive, with links followed.
    const std::string& path() const;
    /// Carries out the change. Without additions and removals an existing archive is not written. Fails with `exists`
    /// if another program has made, changed or removed the archive meanwhile: the change must be started again.
    Status finish();

  private:
    struct State;
    explicit ArchiveChange(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

/// Begins a change, lets `edit` fill it and finishes it; starts again, up to ten times, if another program has changed
/// the archive meanwhile. `code_page` is as for ArchiveChange::begin.
Status change_archive(const std::string& path, const Watch& watch, const std::function<Status(ArchiveChange&)>& edit,
                      std::string_view code_page = {});

}  // namespace quill::zip
