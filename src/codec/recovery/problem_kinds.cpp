#include "codec/recovery/problem_kinds.h"

#include "codec/recovery/disguise.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quill::codec {
namespace {

/// Who hears of a problem once it is repaired.
enum class Audience : std::uint8_t { programs, people };

struct Kind {
    std::string_view word;
    Audience audience = Audience::programs;
    Proof settled_by = Proof::none;  ///< the least proof that makes it repaired; none where nothing does
};

/// The kinds that need more than their grade says. All others are for people unless they are repaired, and no proof
/// settles them.
constexpr std::array kinds = {
    Kind{"bad-field", Audience::people},        // a checksum that nobody can read checked nothing
    Kind{disguised_name, Audience::people},     // a program that looks like a picture
    Kind{"damaged-copy", Audience::people},     // a copy of a part is left out
    Kind{"md5-differs", Audience::people},      // the text differs from what its sender saw
    Kind{"text-after-data", Audience::people},  // may be the rest of the file
    Kind{"doubtful-end", Audience::programs, Proof::size},
    Kind{"doubtful-row", Audience::programs, Proof::size},
    Kind{"inner-padding", Audience::programs, Proof::size},
    Kind{"missing-padding", Audience::programs, Proof::size},
    Kind{"missing-part", Audience::programs, Proof::checksum},
    Kind{"parts-differ", Audience::people, Proof::checksum},
    Kind{"short-line", Audience::programs, Proof::checksum},
    Kind{"text-between", Audience::programs, Proof::size},
    Kind{"uneven-lines", Audience::programs, Proof::checksum},
    Kind{"unnumbered-parts", Audience::programs, Proof::size},
};

const Kind* find_kind(std::string_view word) {
    const auto* const kind =
        std::find_if(kinds.begin(), kinds.end(), [word](const Kind& row) { return row.word == word; });
    return kind == kinds.end() ? nullptr : kind;
}

}  // namespace

bool is_for_people(const Problem& problem) {
    if (problem.grade != Grade::repaired) return true;
    const Kind* const kind = find_kind(problem.kind);
    return kind != nullptr && kind->audience == Audience::people;
}

bool is_settled(const Problem& problem, Proof proof) {
    const Kind* const kind = find_kind(problem.kind);
    return kind != nullptr && kind->settled_by != Proof::none && kind->settled_by <= proof;
}

}  // namespace quill::codec
