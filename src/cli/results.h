#pragma once

#include "cli/console.h"

#include <cstdint>
#include <string_view>

namespace CLI {
class App;
}

namespace quill::cli {

/// How results are printed.
enum class ReportStyle : std::uint8_t {
    lines,       ///< a line each, for people
    json,        ///< one JSON array
    json_lines,  ///< a JSON object on each line
    silent,      ///< not at all
};

/// The options that choose the style.
struct ResultOptions {
    bool json = false;
    bool json_lines = false;
    bool quiet = false;

    ReportStyle style() const;
};

/// Adds --json, --json-lines and --quiet to `command`.
void add_result_options(CLI::App& command, ResultOptions& options);

/// When a result reaches the reader of standard output.
enum class Delivery : std::uint8_t {
    at_once,  ///< for those that take time to come
    later     ///< with others, at the end at the latest
};

/// The results of a run on standard output.
class Results {
  public:
    Results(const Console& console, ReportStyle style) : console_(console), style_(style) {}

    ReportStyle style() const { return style_; }
    bool are_json() const { return style_ == ReportStyle::json || style_ == ReportStyle::json_lines; }

    /// Prints one result: a JSON object where are_json(), else a line without its end.
    void put(std::string_view result, Delivery delivery = Delivery::at_once);

    /// Closes what has been opened.
    void finish();

  private:
    const Console& console_;
    ReportStyle style_;
    bool any_ = false;
};

}  // namespace quill::cli
