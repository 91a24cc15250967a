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
/// Bytes that another program cuts off meanwhile read as zeros instead of ending the process; `cut_short` reports it.
class MappedFile {
  public:
    /// Fails with the system's reason, or with `unsupported` for anything but a regular file (a directory, a pipe, a
    /// device). An empty file gives empty bytes.
    static Result<MappedFile> open(const std::string& path);

    /// Presents existing mapped memory, such as a part of a temporary file, as a file. It never changes.
    explicit MappedFile(Mapping mapping) : mapping_(std::move(mapping)) {}

    std::string_view bytes() const { return mapping_.bytes(); }

    /// Copies up to `size` bytes from `offset` to `out` with the system's read, not through the mapping. Returns how
    /// many bytes the file had.
    std::size_t read(std::uint64_t offset, char* out, std::size_t size) const;

    /// Returns the open descriptor, for system calls that copy from one file to another.
    int descriptor() const { return fd_.get(); }

    /// Returns true if the file has lost bytes since it was opened, so that bytes read from here can't be trusted.
    bool cut_short() const;

    /// Returns true if another program has written to the file since it was opened: bytes read may mix two states.
    bool changed() const;

    /// Allows the system to drop the bytes before `offset` from memory. They stay readable but must be fetched again.
    /// Keeps the resident memory of a long run small.
    void release_before(std::size_t offset) const;

  private:
    MappedFile() = default;

    Descriptor fd_;
    Mapping mapping_;
    std::timespec written_ = {};  ///< the modification time when it was opened
    mutable std::size_t released_ = 0;
};

/// Returns the error for an input that was cut off or written to during a run.
Error changed_while_read();

}  // namespace quill::files
