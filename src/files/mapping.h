#pragma once

#include "text/result.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quill::files {

struct GuardedRange;

/// A file's bytes in memory, read-only. A page that the file has lost reads as zeros instead of ending the process with
/// SIGBUS; any number of mappings may exist at once.
class Mapping {
  public:
    Mapping() = default;

    /// Maps `size` bytes of the open file `fd` from `offset`, a multiple of the page size; 0 bytes give an empty
    /// mapping. Fails with the system's reason.
    static Result<Mapping> of(int fd, std::size_t size, std::uint64_t offset = 0);

    Mapping(Mapping&& other) noexcept;
    Mapping& operator=(Mapping&& other) noexcept;
    ~Mapping();

    std::string_view bytes() const { return {data_, size_}; }

  private:
    const char* data_ = nullptr;
    std::size_t size_ = 0;
    GuardedRange* guard_ = nullptr;
};

}  // namespace quill::files
