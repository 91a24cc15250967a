#pragma once

#include "files/mapped_file.h"
#include "text/result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::files {

/// What is to happen when the wanted name is taken at the moment of publishing.
enum class OnCollision {
    fail,         ///< Nothing is changed; the error is `exists`.
    choose_name,  ///< The file gets the next free name of the row `name.ext`, `name (2).ext`, `name (3).ext`, ...
    replace       ///< The old file is replaced in one step. A symbolic link of that name is replaced, not followed.
};

/// Whether publishing waits until the bytes have reached the disk.
enum class Durability {
    cached,  ///< As any other program's output: for what can be made again.
    flushed  ///< For rewrites of a user's own file: after a power cut the old or the new file is there, whole.
};

/// A file that appears under its name only when it is whole.
///
/// The bytes go to a new file in the target's directory (made with O_EXCL, so never through a link; mode 0644 less the
/// umask; never executable), which `publish` renames. A destroyed writer that was not published leaves nothing behind.
class AtomicFile {
  public:
    /// Fails with the system's reason where the directory does not take a new file.
    static Result<AtomicFile> create(const std::string& path);

    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&& other) noexcept;
    ~AtomicFile();

    /// Appends `bytes`. A failure is remembered: all later writes and `publish` fail with it.
    bool write(std::string_view bytes);

    /// Writes `bytes` at `offset`, leaving a gap of zeros where nothing is written before it. The next `write` still
    /// appends behind the furthest byte written.
    bool write_at(std::uint64_t offset, std::string_view bytes);

    /// Bytes from the beginning to the furthest one written.
    std::uint64_t size() const { return size_; }

    /// What has been written so far, for a check before it is published.
    Result<MappedFile> read_back() const;

    /// The first failure of a write, if any.
    bool failed() const { return failed_; }
    const Error& error() const { return error_; }

    /// Gives the file its name and returns the path that it got. On failure nothing of it is left.
    Result<std::string> publish(OnCollision on_collision, Durability durability = Durability::cached);

    /// Replaces the user's own file at the path given, flushed, and gives the new one the old one's permission bits.
    Status publish_as_rewrite();

  private:
    AtomicFile() = default;
    void discard();
    bool fail(int number);

    std::string path_;
    std::string temporary_;
    int fd_ = -1;
    std::uint64_t size_ = 0;
    bool failed_ = false;
    Error error_;
};

/// Replaces the file `path` by `bytes` in one step, flushed; its permission bits are kept.
Status rewrite_file(const std::string& path, std::string_view bytes);

}  // namespace quill::files
