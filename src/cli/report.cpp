#include "cli/report.h"

#include "cli/json.h"
#include "text/printable.h"

#include <ostream>

namespace quill::cli {
namespace {

std::string json_of(const codec::Problem& problem, const NameOfInput& input_of) {
    return json_object({{"kind", json_string(word_of(problem))},
                        {"input", json_or_null(input_of(problem))},
                        {"at", std::to_string(problem.at_input)},
                        {"text", json_string(text_of(problem))}});
}

std::string json_of(const std::optional<codec::Origin>& origin) {
    if (!origin) return "null";
    return json_object({{"from", json_or_null(origin->from)},
                        {"subject", json_or_null(origin->subject)},
                        {"date", json_or_null(origin->date)},
                        {"message_id", json_or_null(origin->message_id)}});
}

}  // namespace

std::string json_of(const report::Problem& problem) {
    return json_object({{"kind", json_string(word_of(problem))},
                        {"at", std::to_string(problem.at_input)},
                        {"text", json_string(text_of(problem))}});
}

Error output_exists() {
    return {ErrorCode::exists, 0, "exists already; use --force to replace it"};
}

Error output_is_input() {
    return {ErrorCode::bad_argument, 0, "the output would replace an input"};
}

std::string line_of(const codec::Recovered& file) {
    return printable(file.name) + "\t" + std::to_string(file.outcome.size) + "\t" +
           std::string(name_of(file.outcome.verdict)) + "\t" + std::string(name_of(file.format)) +
           (file.already_there ? "\talready there" : "");
}

std::string json_of(const codec::Recovered& file, const NameOfInput& input_of) {
    const auto problem = [&](const codec::Problem& item) { return json_of(item, input_of); };
    return json_object({{"name", json_string(file.name)},
                        {"path", json_or_null(file.path)},
                        {"size", std::to_string(file.outcome.size)},
                        {"format", json_string(name_of(file.format))},
                        {"verdict", json_string(name_of(file.outcome.verdict))},
                        {"already_there", json_flag(file.already_there)},
                        {"problems", json_array(file.outcome.problems, problem)},
                        {"sources", json_array(file.sources, json_string)},
                        {"origin", json_of(file.origin)}});
}

void Report::add(const codec::Recovered& file, const NameOfInput& input_of) {
    using codec::Verdict;
    found_ = true;
    if (file.outcome.verdict == Verdict::damaged || file.outcome.verdict == Verdict::incomplete) damaged_ = true;
    results_.put(results_.are_json() ? json_of(file, input_of) : line_of(file));
    if (results_.style() != ReportStyle::lines) return;
    for (const codec::Problem& problem : file.outcome.problems) {
        if (is_for_people(problem)) print_problem(file.name, problem, input_of);
    }
}

void Report::add(const codec::Problem& problem, const NameOfInput& input_of) {
    damaged_ = true;
    if (results_.style() != ReportStyle::silent) print_problem({}, problem, input_of);
}

/// Prints "quill: cat.txt: in part2.uue, at byte 20: ...", leaving out an empty name or input.
void Report::print_problem(std::string_view name, const codec::Problem& problem, const NameOfInput& input_of) const {
    const std::string input = input_of(problem);
    console_.err << "quill: " << printable(name) << (name.empty() ? "" : ": ");
    if (!input.empty()) console_.err << "in " << printable(input) << ", ";
    console_.err << "at byte " << problem.at_input << ": " << printable(text_of(problem)) << '\n';
}

void Report::fail(std::string_view what, const Error& error) {
    failed_ = true;
    console_.err << "quill: " << printable(what) << (what.empty() ? "" : ": ") << printable(error.text) << '\n';
}

ExitStatus Report::finish(const std::vector<std::string>& remarks) {
    results_.finish();
    if (results_.style() == ReportStyle::lines) {
        for (const std::string& remark : remarks) console_.err << "quill: " << printable(remark) << '\n';
    }
    if (failed_) return ExitStatus::failed;
    if (damaged_) return ExitStatus::damaged;
    return found_ ? ExitStatus::good : ExitStatus::nothing;
}

}  // namespace quill::cli
