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
/// Nothing happens to the archive before `finish`, which writes a new file beside it, copies what stays byte by byte,
/// reads the new file back and checks it, and gives it the archive's name: at every moment the old archive or the new
/// one is there, whole. The members that stay keep their order; a member that replaces one takes its place in it. Other
/// changes of the archive by this program wait until this one has ended.
class ArchiveChange {
  public:
    /// Opens the archive at `path`, or begins a new one where there is no file or an empty one. A link is followed, so
    /// that the file it leads to is changed. Everything that takes time asks `watch`, and fails with `cancelled` where
    /// it says no. Fails with `bad_input` for what is no archive, with `unsupported` for a damaged one, which could
    /// only be changed by guessing, and for what is no regular file, with `access` for a write-protected one. Names
    /// without a sign of their character set are read in `code_page`, as Archive::read_names_in does.
    static Result<ArchiveChange> begin(const std::string& path, MakeOutput make_output = output_beside,
                                       Watch watch = {}, std::string_view code_page = {});

    ArchiveChange(ArchiveChange&&) noexcept;
    ArchiveChange& operator=(ArchiveChange&&) noexcept;
    ~ArchiveChange();

    /// Compresses the file at `file` to become the member `name`. It waits for `put` or `replace`.
    Result<PackedMember> pack(const std::string& file, const std::string& name, const PackOptions& options);
    /// Does the same for the symbolic link at `path`, as a link.
    Result<PackedMember> pack_link(const std::string& path, const std::string& name, const PackOptions& options);
    /// Adds a packed member instead of the last one of exactly its name, or at the end.
    void put(PackedMember member, const PackOptions& options);
    /// Adds a packed member in the place of a member of the old archive. REQUIRES: `has(old_member)`.
    void replace(std::size_t old_member, PackedMember member, const PackOptions& options);
    /// Whether the member of the old archive is still in the new one.
    bool has(std::size_t old_member) const;

    /// `pack` and `put`.
    Status add_file(const std::string& file, const std::string& name, const PackOptions& options);
    /// Adds the symbolic link at `path` as a link.
    Status add_link(const std::string& path, const std::string& name, const PackOptions& options);
    /// Adds the directory `name` (no slash at its end) unless it is there.
    Status add_directory(const std::string& name, std::time_t modified);

    /// Drops members of the old archive, by their numbers. Fails with `bad_argument`, and drops none, where it does not
    /// have one of them (any more).
    Status remove(const std::vector<std::size_t>& members);
    /// How the last member of the old archive is encrypted that is encrypted at all; nullopt where none is.
    std::optional<archive::Encryption> usual_encryption() const;
    /// The members of the old archive.
    const std::vector<Member>& old_members() const;
    /// The numbers of those that stay and are called `name`.
    std::vector<std::size_t> find(std::string_view name) const;

    /// The path of the archive, links followed.
    const std::string& path() const;
    /// Carries it all out. A change without additions and removals of an archive that exists writes nothing. Fails with
    /// `exists` where another program has made, changed or removed the archive meanwhile: it has to be begun again.
    Status finish();

  private:
    struct State;
    explicit ArchiveChange(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

/// Begins a change, lets `edit` fill it and finishes it; all over again, up to ten times, where another program has
/// changed the archive meanwhile. `code_page` is as for ArchiveChange::begin.
Status change_archive(const std::string& path, const Watch& watch, const std::function<Status(ArchiveChange&)>& edit,
                      std::string_view code_page = {});

}  // namespace quill::zip
