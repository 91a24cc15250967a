#pragma once

#include "files/descriptor.h"
#include "text/result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace quill::files {

/// A file without a name in $TMPDIR, else in /tmp: gone with this object and what has mapped it.
class TemporaryFile {
  public:
    /// Fails with the system's reason.
    static Result<TemporaryFile> create();

    /// Appends `bytes`. Fails with the system's reason.
    Status write(std::string_view bytes);

    std::uint64_t size() const { return size_; }

    /// What opens it as long as this object lives.
    std::string path() const;

  private:
    explicit TemporaryFile(Descriptor fd) : fd_(std::move(fd)) {}

    Descriptor fd_;
    std::uint64_t size_ = 0;
};

}  // namespace quill::files
