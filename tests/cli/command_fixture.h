#pragma once

#include "cli/commands.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace quill::cli {

/// Calls of the program in a separate directory.
class CommandTest : public testing::Test {
  protected:
    /// Calls the program with `input` on standard input.
    ExitStatus call(const std::vector<std::string>& arguments, const std::string& input = {}) {
        std::istringstream in(input);
        std::ostringstream out_stream;
        std::ostringstream err_stream;
        const ExitStatus status = run(arguments, {in, out_stream, err_stream});
        out = out_stream.str();
        err = err_stream.str();
        return status;
    }

    tests::TemporaryDirectory directory;
    std::string out;  ///< the output of the last call
    std::string err;
};

}  // namespace quill::cli
