#pragma once

#include "files/descriptor.h"
#include "files/mapping.h"
#include "text/result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace quill::files {

/// An unnamed file in $TMPDIR, else in /tmp: gone with this object and its mappings.
class TemporaryFile {
  public:
    /// Fails with the system's reason.
    static Result<TemporaryFile> create();

    /// Appends `bytes`. Fails with the system's reason.
    Status write(std::string_view bytes);

    std::uint64_t size() const { return size_; }

    /// Returns a path that opens it as long as this object lives.
    std::string path() const;

    /// Appends zeros up to the next page boundary, where a later `map` can begin. Fails with the system's reason.
    Status begin_page();

    /// Maps what was written from `begin`, a page boundary, to the end. The mapping outlives this object. Fails with
    /// the system's reason.
    Result<Mapping> map(std::uint64_t begin) const;

  private:
    explicit TemporaryFile(Descriptor fd) : fd_(std::move(fd)) {}

    Descriptor fd_;
    std::uint64_t size_ = 0;
};

}  // namespace quill::files
