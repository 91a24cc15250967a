#pragma once

#include "files/descriptor.h"
#include "files/mapped_file.h"
#include "files/unfinished.h"
#include "text/result.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quill::files {

/// What happens if the requested name is taken at the time of publishing.
enum class OnCollision {
    fail,         ///< Changes nothing; the error is `exists`.
    choose_name,  ///< Uses the next free name in the series `name.ext`, `name (2).ext`, `name (3).ext`, ...
    replace  ///< Replaces the old file in one step, flushed. A symbolic link of that name is replaced, not followed.
};

/// The last number used in each series of numbered names, for a run that publishes many files: names taken earlier in
/// the run are not tried again.
using LastNumbers = std::unordered_map<std::string, unsigned>;

/// Whether publishing a new file waits until its bytes have reached the disk. Replacing a file always waits: after a
/// power cut either the old or the new file is complete.
enum class Durability {
    cached,  ///< Like the output of any other program: for data that can be made again.
    flushed  ///< For a user's own data.
};

/// Who may read and write a new file, from before its first byte is written.
enum class Access {
    usual,   ///< Everything that the umask allows (0644 less the umask). Never executable.
    of_old,  ///< The permission bits, owner, group and extended attributes of the file at the path, as far as the
             ///< system allows; if the group can't be kept, it gets no more rights than everyone. Otherwise as `usual`.
    of_owner  ///< Only the user (0600).
};

/// A file that appears under its name only when it is complete.
///
/// The bytes go to a new file in the target's directory that has no name until `publish` names it, so that even a
/// killed process leaves nothing. If the file system has no unnamed files, the file gets a temporary name (see
/// unfinished_name; created with O_EXCL, so never through a link) and is renamed later. A writer that is destroyed
/// before it is published leaves nothing.
class AtomicFile {
  public:
    /// Fails with the system's reason if the directory does not accept a new file.
    static Result<AtomicFile> create(const std::string& path, Access access = Access::usual);

    /// Begins a file at `path` with the access of `model`: its permission bits, owner, group and extended attributes,
    /// as for Access::of_old.
    static Result<AtomicFile> create_like(const std::string& path, const MappedFile& model);

    /// Begins a file `name` in the directory that the descriptor `directory`, which must stay open, leads to: with
    /// fewer steps than by a path, and no renaming or linking can lead it elsewhere. Fails as above.
    static Result<AtomicFile> create_in(int directory, const std::string& name);

    /// Begins output under a path that the user chose, which may lead to something: a link is followed, a regular file
    /// there gives the new one its access (of_old), and a pipe or a character device is written to directly; what it
    /// has taken cannot be taken back. Fails with `exists` for a link that leads nowhere, with `access` for a
    /// directory, with `unsupported` for a disk.
    static Result<AtomicFile> create_output(const std::string& path);

    /// Appends `bytes`. A failure is sticky: all later writes and `publish` fail with it.
    bool write(std::string_view bytes);

    /// Writes `bytes` at `offset`, filling any gap before it with zeros. The next `write` still appends after the
    /// furthest byte written. A pipe accepts bytes only in order.
    bool write_at(std::uint64_t offset, std::string_view bytes);

    /// Appends `size` bytes of `source` from `offset`, copying inside the kernel if possible. Returns how many the
    /// source had. Calls `watch` with the bytes copied so far, at least every 16 MiB; the copy fails with `cancelled`
    /// if it returns false. Other failures are sticky like those of `write`.
    Result<std::uint64_t> copy(const MappedFile& source, std::uint64_t offset, std::uint64_t size,
                               const std::function<bool(std::uint64_t done)>& watch);

    /// Gives the file the modification time of `model`, as far as the system allows. Call it after the last write.
    void take_time(const MappedFile& model);

    /// Returns the bytes from the beginning to the furthest one written.
    std::uint64_t size() const { return size_; }

    /// Sets when the file was last changed, for after the last write. Nothing reports a failure.
    void set_time(std::time_t time);

    /// Its permission bits as they are now.
    unsigned permissions() const;

    /// Returns the bytes written so far, for a check before publishing.
    Result<MappedFile> read_back() const;

    /// Returns true if a write has failed.
    bool failed() const { return failed_; }
    const Error& error() const { return error_; }

    /// Gives the file its name and returns the path that it got, relative as the one it was begun with. On failure
    /// nothing of it is left. With `last_numbers` the search for a free name goes on where the last one of that row
    /// ended.
    Result<std::string> publish(OnCollision on_collision, Durability durability = Durability::cached,
                                LastNumbers* last_numbers = nullptr);

    /// Replaces the user's own file at the given path.
    Status publish_as_rewrite();

  private:
    AtomicFile(int directory, std::string path) : directory_(directory), path_(std::move(path)) {}
    Status open_new(Access access);
    Status open_like(const std::string& model);
    Status open_with(unsigned mode);
    Status open_named(unsigned mode);
    Status open_directly();
    Status name_exclusively(const std::string& target);
    Result<std::string> take_name(OnCollision on_collision, LastNumbers* last_numbers);
    Result<std::string> take_free_name(unsigned first, unsigned most);
    Result<std::string> choose_name(LastNumbers* last_numbers);
    std::optional<std::size_t> copy_within_system(const MappedFile& source, std::uint64_t offset, std::size_t size);
    std::string reachable(const std::string& path) const;
    bool settle(bool flushed);
    bool fail(int number);

    int directory_;  ///< what `path_` is relative to
    std::string path_;
    Unfinished unfinished_;  ///< its temporary name, if it has one
    Descriptor fd_;
    bool direct_ = false;  ///< a pipe or a device
    unsigned number_ = 1;  ///< of the name being tried
    std::uint64_t size_ = 0;
    bool failed_ = false;
    Error error_;
};

/// Makes a write beyond the file size limit fail like a write to a full disk instead of ending the process. Call it at
/// the beginning of a program; the programs that it starts are not affected.
void let_oversized_writes_fail();

/// Replaces the file that `path` leads to with `bytes` in one step and keeps its access rights.
Status rewrite_file(const std::string& path, std::string_view bytes);

}  // namespace quill::files
