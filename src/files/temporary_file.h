#pragma once

#include "text/result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::files {

/// A file without a name in $TMPDIR, else in /tmp: gone with this object and what has mapped it.
class TemporaryFile {
  public:
    /// Fails with the system's reason.
    static Result<TemporaryFile> create();

    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&& other) = delete;
    ~TemporaryFile();

    /// Appends `bytes`. Fails with the system's reason.
    Status write(std::string_view bytes);

    std::uint64_t size() const { return size_; }

    /// What opens it as long as this object lives.
    std::string path() const;

  private:
    explicit TemporaryFile(int fd) : fd_(fd) {}

    int fd_;
    std::uint64_t size_ = 0;
};

}  // namespace quill::files
