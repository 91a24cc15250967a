#pragma once

#include "qpunwrap/unwrap.h"
#include "text/result.h"

#include <string>

namespace quill::qpunwrap {

/// The exit status of the program.
enum class ExitStatus : int {
    made = 0,     ///< Something was made, and all of it was written.
    nothing = 1,  ///< The file contains no quoted-printable text.
    failed = 2    ///< The file could not be read, a result could not be written, or the arguments are invalid.
};

struct Report {
    ExitStatus status = ExitStatus::made;
    std::string text;  ///< for people: lines ended by '\n', without control characters
};

/// Returns the report on the file at `path`.
Report report(const std::string& path, const Result<Unwrapped>& result);

}  // namespace quill::qpunwrap
