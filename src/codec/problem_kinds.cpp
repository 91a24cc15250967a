#include "codec/problem_kinds.h"

#include "codec/disguise.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quill::codec {
namespace {

enum class Audience : std::uint8_t { programs, people };

struct RepairedKind {
    std::string_view word;
    Audience audience;
};

/// Who hears of a repaired problem. Kinds that are not listed are for programs.
constexpr std::array repaired_kinds = {
    RepairedKind{"bad-field", Audience::people},           // a checksum that nobody can read checked nothing
    RepairedKind{disguised_name, Audience::people},        // a program that looks like a picture
    RepairedKind{"dots-added", Audience::programs},        // taken off again
    RepairedKind{"duplicate-part", Audience::programs},    // the same bytes twice
    RepairedKind{"inner-padding", Audience::programs},     // read on
    RepairedKind{"long-line", Audience::programs},         // the length character decides
    RepairedKind{"lost-blanks", Audience::programs},       // put back
    RepairedKind{"md5-differs", Audience::people},         // the text differs from what its sender saw
    RepairedKind{"missing-boundary", Audience::programs},  // the data show their own end
    RepairedKind{"missing-end", Audience::programs},       // the same
    RepairedKind{"missing-padding", Audience::programs},   // the bytes are all there
    RepairedKind{"missing-part", Audience::programs},      // it held nothing of the file
    RepairedKind{"quoted", Audience::programs},            // the marks are taken off
    RepairedKind{"size-differs", Audience::programs},      // line ends, or a checksum outweighs it
    RepairedKind{"tagged-lines", Audience::programs},      // the tags are taken off
    RepairedKind{"text-after-data", Audience::people},     // may be the rest of the file
    RepairedKind{"wrong-boundary", Audience::programs},    // the parts are there
};

}  // namespace

bool is_for_people(const Problem& problem) {
    if (problem.grade != Grade::repaired) return true;
    const auto kind = std::find_if(repaired_kinds.begin(), repaired_kinds.end(),
                                   [&](const RepairedKind& row) { return row.word == problem.kind; });
    return kind != repaired_kinds.end() && kind->audience == Audience::people;
}

}  // namespace quill::codec
