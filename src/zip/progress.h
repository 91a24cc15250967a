#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace quill::zip {

/// How much of a run is done.
struct Progress {
    std::size_t members_done = 0;
    std::size_t members = 0;
    std::uint64_t bytes_done = 0;
    std::uint64_t bytes = 0;  ///< as the members' headers or the files state
};

/// Called periodically with the progress, in the thread that began the run; returns false to cancel it. May be empty.
using Watch = std::function<bool(const Progress&)>;

}  // namespace quill::zip
