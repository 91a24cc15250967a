#pragma once

#include <cstdint>
#include <iosfwd>

namespace quill::cli {

/// The streams that a command works with.
struct Console {
    std::istream& in;
    std::ostream& out;  ///< results
    std::ostream& err;  ///< errors and progress
    bool err_is_terminal = false;
};

/// The exit status of the process.
enum class ExitStatus : std::uint8_t {
    good = 0,     ///< Everything found is whole or verified.
    damaged = 1,  ///< Something found is damaged or incomplete.
    nothing = 2,  ///< The input contains nothing.
    failed = 3    ///< Bad usage, or something could not be read or written.
};

}  // namespace quill::cli
