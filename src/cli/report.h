#pragma once

#include "cli/console.h"
#include "codec/recover.h"
#include "text/printable.h"
#include "text/result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::cli {

using text::printable;

/// `bytes` as a JSON string, quotes around it (RFC 8259 7). A byte that is not UTF-8 becomes the lone surrogate U+DC80
/// to U+DCFF of its value, so that no two names look alike and a reader can have the bytes back. What would act on a
/// terminal is escaped.
std::string json_string(std::string_view bytes);

/// One result as a line without its end: name, size, verdict, format, with tabs between.
std::string line_of(const codec::Recovered& file);

/// One result as a JSON object: name, path (null where nothing was written), size, format, verdict, problems (kind, at,
/// text), sources.
std::string json_of(const codec::Recovered& file);

/// How results are told.
enum class ReportStyle : std::uint8_t {
    lines,   ///< a line each as they come; what is wrong with one on standard error
    json,    ///< one array at the end
    silent,  ///< errors alone
};

/// Tells a run's results and failures, and sums them up.
class Report {
  public:
    Report(const Console& console, ReportStyle style) : console_(console), style_(style) {}

    void add(const codec::Recovered& file);

    /// Says what is wrong with the inputs as a whole, which takes something away from the results.
    void add(const codec::Problem& problem);

    /// Says that `what` failed. `error.text` is the reason; an empty `what` leaves the reason alone.
    void fail(std::string_view what, const Error& error);

    /// Ends the report and tells the status of the run: a failure weighs most, then damage; a run that found nothing
    /// says so.
    ExitStatus finish();

  private:
    void tell_problems(const codec::Recovered& file) const;

    const Console& console_;
    ReportStyle style_;
    std::string json_;
    bool found_ = false;
    bool damaged_ = false;
    bool failed_ = false;
};

}  // namespace quill::cli
