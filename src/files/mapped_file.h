#pragma once

#include "files/descriptor.h"
#include "files/mapping.h"
#include "text/result.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <utility>

namespace quill::files {

/// A regular file's bytes, mapped read-only. The mapping stays valid when the file is renamed or unlinked.
///
/// Bytes that another program cuts off meanwhile read as zeros, instead of ending the process; `cut_short` reports it.
class MappedFile {
  public:
    /// Fails with the system's reason, or `unsupported` for what is no regular file (a directory, a pipe, a device).
    /// An empty file gives empty bytes.
    static Result<MappedFile> open(const std::string& path);

    /// Reads as a file what is mapped already, such as a part of a temporary file. It never changes.
    explicit MappedFile(Mapping mapping) : mapping_(std::move(mapping)) {}

    std::string_view bytes() const { return mapping_.bytes(); }

    /// Copies up to `size` bytes from `offset` on to `out`, by the system's read and not through the mapping. Returns
    /// how many bytes the file had.
    std::size_t read(std::uint64_t offset, char* out, std::size_t size) const;

    /// The open file, for system calls that copy from one to another.
    int descriptor() const { return fd_.get(); }

    /// Whether the file has lost bytes since it was opened, so that what was read from here is not to be trusted.
    bool cut_short() const;

    /// Whether another program has written to the file since it was opened: what was read may be of two states.
    bool changed() const;

    /// Tells the system that the bytes before `offset` need not stay in memory. They stay readable, at the cost of
    /// being fetched again. Keeps a long run's resident memory small.
    void release_before(std::size_t offset) const;

  private:
    MappedFile() = default;

    Descriptor fd_;
    Mapping mapping_;
    std::timespec written_ = {};  ///< when it was last changed, as of opening
    mutable std::size_t released_ = 0;
};

/// What is said of an input that was cut off or written to during a run.
Error changed_while_read();

}  // namespace quill::files
