#pragma once

#include "files/mapped_file.h"
#include "text/result.h"
#include "zip/archive.h"
#include "zip/packing.h"

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

/// Where a changed archive's bytes go until it is whole. Destroyed without having been published, it leaves nothing.
class ArchiveOutput {
  public:
    virtual ~ArchiveOutput() = default;
    virtual Status write(std::string_view bytes) = 0;
    /// Everything written so far, for the check.
    virtual Result<files::MappedFile> read_back() = 0;
    /// Gives it the archive's name, flushed to the disk: in place of the old archive, or, with `is_new`, only where
    /// there is no file of that name.
    virtual Status publish(bool is_new) = 0;
};

/// Begins the output for the archive at a path.
using MakeOutput = std::function<Result<std::unique_ptr<ArchiveOutput>>(const std::string& path)>;

/// A new file beside the archive, which is renamed when it is published.
Result<std::unique_ptr<ArchiveOutput>> output_beside(const std::string& path);

/// One change of an archive, made of any number of additions and removals that take effect together.
///
/// Nothing happens to the archive before `finish`, which writes a new file beside it, copies what stays byte by byte,
/// reads the new file back and checks it, and renames it over the old one: at every moment the old archive or the new
/// one is there, whole. The members that stay keep their order; a member that replaces one takes its place in it.
class ArchiveChange {
  public:
    /// Opens the archive at `path`, or begins a new one where there is no file or an empty one. A link is followed, so
    /// that the file it leads to is changed. Fails with `bad_input` for what is no archive, with `unsupported` for a
    /// damaged one: it could only be changed by guessing. Fails with `access` for a write-protected one.
    static Result<ArchiveChange> begin(const std::string& path, MakeOutput make_output = output_beside);

    ArchiveChange(ArchiveChange&&) noexcept;
    ArchiveChange& operator=(ArchiveChange&&) noexcept;
    ~ArchiveChange();

    /// Compresses the file at `file` to become the member `name`, instead of the last one of exactly that name.
    Status add_file(const std::string& file, const std::string& name, const PackOptions& options);
    /// Compresses the file at `file` to take the place and the name of a member of the old archive, told by its number.
    Status replace(std::size_t member, const std::string& file, const PackOptions& options);
    /// Adds the directory `name` (no slash at its end) unless it is there.
    Status add_directory(const std::string& name, std::time_t modified);

    /// Drops members of the old archive, by their numbers. Fails with `bad_argument`, and drops none, where it does not
    /// have one of them (any more).
    Status remove(const std::vector<std::size_t>& members);
    /// The members of the old archive called `name`.
    std::vector<std::size_t> find(std::string_view name) const;

    /// The path of the archive, links followed.
    const std::string& path() const;
    /// Carries it all out. A change without additions and removals of an archive that exists writes nothing.
    Status finish();

  private:
    struct State;
    explicit ArchiveChange(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace quill::zip
