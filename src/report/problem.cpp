#include "report/problem.h"

#include <array>
#include <cstddef>

namespace quill::report {
namespace {

constexpr std::array<std::string_view, 5> verdict_names{"verified", "whole", "damaged", "incomplete", "refused"};

}  // namespace

std::string_view name_of(Verdict verdict) {
    return verdict_names.at(static_cast<std::size_t>(verdict));
}

std::string_view word_of(const Problem& problem) {
    return traits_of(problem.kind).word;
}

Grade grade_of(const Problem& problem) {
    return problem.settled ? Grade::repaired : traits_of(problem.kind).grade;
}

std::string_view text_of(const Problem& problem) {
    return problem.text.empty() ? traits_of(problem.kind).sentence : std::string_view(problem.text);
}

bool is_for_people(const Problem& problem) {
    return grade_of(problem) != Grade::repaired || traits_of(problem.kind).audience == Audience::people;
}

void settle(Problem& problem, Evidence evidence) {
    const Evidence enough = traits_of(problem.kind).settled_by;
    if (enough != Evidence::none && enough <= evidence) problem.settled = true;
}

}  // namespace quill::report
