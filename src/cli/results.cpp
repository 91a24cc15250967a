#include "cli/results.h"

#include <CLI/CLI.hpp>

#include <ostream>

namespace quill::cli {

ReportStyle ResultOptions::style() const {
    if (json_lines) return ReportStyle::json_lines;
    if (json) return ReportStyle::json;
    return quiet ? ReportStyle::silent : ReportStyle::lines;
}

void add_result_options(CLI::App& command, ResultOptions& options) {
    auto* json = command.add_flag("--json", options.json,
                                  "Print the results as one JSON array of objects; the manual\n"
                                  "page lists their members");
    command.add_flag("--json-lines", options.json_lines, "Print each result as a JSON object on its own line")
        ->excludes(json);
    command.add_flag("--quiet", options.quiet, "Print no result lines and no progress bar, only errors");
}

void Results::put(std::string_view result, Delivery delivery) {
    if (style_ == ReportStyle::silent) return;
    if (style_ == ReportStyle::json) {
        console_.out << (any_ ? ",\n " : "[") << result;
    } else {
        console_.out << result << '\n';
    }
    if (delivery == Delivery::at_once) console_.out.flush();
    any_ = true;
}

void Results::finish() {
    if (style_ == ReportStyle::json) console_.out << (any_ ? "]\n" : "[]\n");
}

}  // namespace quill::cli
