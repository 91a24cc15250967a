#pragma once

#include "cli/console.h"
#include "cli/json.h"
#include "cli/results.h"
#include "codec/recovery/recover.h"
#include "text/printable.h"
#include "text/result.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::cli {

using text::printable;

/// Return the reasons why a path can't be an output.
Error output_exists();
Error output_is_input();

/// Returns one result as a line without its end: name, size, verdict, format, with tabs between, and `already there`.
std::string line_of(const codec::Recovered& file);

/// Returns a problem of an archive or an album as a JSON object: kind, at, text.
std::string json_of(const report::Problem& problem);

/// Returns the name of the input that a problem is in; empty if there is only one or it is not known.
using NameOfInput = std::function<std::string(const codec::Problem&)>;

/// Returns one result as a JSON object: name, path (null if nothing was written), size, format, verdict, already_there,
/// problems (kind, input, at, text), sources, origin.
std::string json_of(const codec::Recovered& file, const NameOfInput& input_of);

/// Reports the results and failures of a run and summarises them.
class Report {
  public:
    Report(const Console& console, ReportStyle style) : console_(console), results_(console, style) {}

    void add(const codec::Recovered& file, const NameOfInput& input_of);

    /// Reports a problem of a whole input that degrades the results.
    void add(const codec::Problem& problem, const NameOfInput& input_of);

    /// Reports that `what` failed, with `error.text` as the reason. With an empty `what` only the reason is printed.
    void fail(std::string_view what, const Error& error);

    /// Prints `remarks`, ends the report and returns the status of the run: a failure outranks damage, damage outranks
    /// finding nothing.
    ExitStatus finish(const std::vector<std::string>& remarks = {});

  private:
    void print_problem(std::string_view name, const codec::Problem& problem, const NameOfInput& input_of) const;

    const Console& console_;
    Results results_;
    bool found_ = false;
    bool damaged_ = false;
    bool failed_ = false;
};

}  // namespace quill::cli
