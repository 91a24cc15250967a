#include "cli/report.h"

#include "cli/json.h"
#include "codec/recovery/problem_kinds.h"
#include "text/printable.h"

#include <ostream>

namespace quill::cli {
namespace {

std::string json_of(const codec::Problem& problem) {
    return json_object({{"kind", json_string(problem.kind)},
                        {"at", std::to_string(problem.at_input)},
                        {"text", json_string(problem.text)}});
}

}  // namespace

std::string line_of(const codec::Recovered& file) {
    return printable(file.name) + "\t" + std::to_string(file.outcome.size) + "\t" +
           std::string(name_of(file.outcome.verdict)) + "\t" + std::string(name_of(file.format)) +
           (file.already_there ? "\talready there" : "");
}

std::string json_of(const codec::Recovered& file) {
    const auto problem = [](const codec::Problem& item) { return json_of(item); };
    return json_object({{"name", json_string(file.name)},
                        {"path", json_or_null(file.path)},
                        {"size", std::to_string(file.outcome.size)},
                        {"format", json_string(name_of(file.format))},
                        {"verdict", json_string(name_of(file.outcome.verdict))},
                        {"already_there", json_flag(file.already_there)},
                        {"problems", json_array(file.outcome.problems, problem)},
                        {"sources", json_array(file.sources, json_string)}});
}

void Report::add(const codec::Recovered& file) {
    using codec::Verdict;
    found_ = true;
    if (file.outcome.verdict == Verdict::damaged || file.outcome.verdict == Verdict::incomplete) damaged_ = true;
    results_.put(results_.are_json() ? json_of(file) : line_of(file));
    if (results_.style() == ReportStyle::lines) tell_problems(file);
}

void Report::tell_problems(const codec::Recovered& file) const {
    for (const codec::Problem& problem : file.outcome.problems) {
        if (!codec::is_for_people(problem)) continue;
        console_.err << "quill: " << printable(file.name) << ": at byte " << problem.at_input << ": "
                     << printable(problem.text) << '\n';
    }
}

void Report::add(const codec::Problem& problem) {
    damaged_ = true;
    if (results_.style() == ReportStyle::silent) return;
    console_.err << "quill: at byte " << problem.at_input << ": " << printable(problem.text) << '\n';
}

void Report::fail(std::string_view what, const Error& error) {
    failed_ = true;
    console_.err << "quill: " << printable(what) << (what.empty() ? "" : ": ") << printable(error.text) << '\n';
}

ExitStatus Report::finish(std::string_view nothing_found) {
    results_.finish();
    const bool nothing = !found_ && !damaged_ && !failed_;
    if (nothing && !nothing_found.empty() && results_.style() == ReportStyle::lines) {
        console_.err << "quill: " << printable(nothing_found) << '\n';
    }
    if (failed_) return ExitStatus::failed;
    if (damaged_) return ExitStatus::damaged;
    return found_ ? ExitStatus::good : ExitStatus::nothing;
}

}  // namespace quill::cli
