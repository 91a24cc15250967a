#pragma once

#include "cli/console.h"
#include "cli/json.h"
#include "cli/results.h"
#include "codec/recovery/recover.h"
#include "text/printable.h"
#include "text/result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::cli {

using text::printable;

/// One result as a line without its end: name, size, verdict, format, with tabs between, and what was not written anew.
std::string line_of(const codec::Recovered& file);

/// One result as a JSON object: name, path (null where nothing was written), size, format, verdict, already_there,
/// problems (kind, at, text), sources.
std::string json_of(const codec::Recovered& file);

/// Reports a run's results and failures, and sums them up.
class Report {
  public:
    Report(const Console& console, ReportStyle style) : console_(console), results_(console, style) {}

    void add(const codec::Recovered& file);

    /// Says what is wrong with the inputs as a whole, which takes something away from the results.
    void add(const codec::Problem& problem);

    /// Says that `what` failed. `error.text` is the reason; an empty `what` leaves the reason alone.
    void fail(std::string_view what, const Error& error);

    /// Ends the report and returns the status of the run: a failure weighs most, then damage, then that nothing was
    /// found, which `nothing_found` says.
    ExitStatus finish(std::string_view nothing_found = {});

  private:
    void tell_problems(const codec::Recovered& file) const;

    const Console& console_;
    Results results_;
    bool found_ = false;
    bool damaged_ = false;
    bool failed_ = false;
};

}  // namespace quill::cli
