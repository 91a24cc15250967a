#include "codec/recovery/proof.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace quill::codec {
namespace {

using report::Grade;
using report::ProblemKind;
using report::Verdict;

using Take = void (*)(Proof& proof);

constexpr Take no_begin = [](Proof& proof) { proof.begin = false; };
constexpr Take no_end = [](Proof& proof) { proof.end = false; };
constexpr Take a_gap = [](Proof& proof) { ++proof.gaps; };
constexpr Take broken_law = [](Proof& proof) { proof.law = BodyLaw::broken; };
constexpr Take a_foreign_row = [](Proof& proof) { ++proof.foreign; };
constexpr Take a_suspect_row = [](Proof& proof) { ++proof.rows.suspect; };
constexpr Take a_repair = [](Proof& proof) { ++proof.rows.repaired; };
constexpr Take a_doubt = [](Proof& proof) { ++proof.doubts; };
constexpr Take wrong_size = [](Proof& proof) { proof.size = Claim::differs; };
constexpr Take wrong_checksum = [](Proof& proof) { proof.checksum = Claim::differs; };

/// What a problem of a kind adds to a proof or takes from it.
struct Effect {
    ProblemKind kind;
    Take take;
};

// Other kinds count by their grade: a gap, a suspect row or a repair.
constexpr std::array effects = {
    Effect{ProblemKind::missing_begin, no_begin},
    Effect{ProblemKind::cut_group, no_end},
    Effect{ProblemKind::cut_off, no_end},
    Effect{ProblemKind::missing_body, no_end},
    Effect{ProblemKind::missing_boundary, no_end},
    Effect{ProblemKind::missing_end, no_end},
    Effect{ProblemKind::uneven_lines, broken_law},
    Effect{ProblemKind::foreign_line, a_foreign_row},
    Effect{ProblemKind::bad_size, wrong_size},
    Effect{ProblemKind::bad_crc, wrong_checksum},
    Effect{ProblemKind::bad_md5, wrong_checksum},
    Effect{ProblemKind::bad_sum, wrong_checksum},
    Effect{ProblemKind::damaged_message, a_doubt},
    Effect{ProblemKind::doubtful_end, a_doubt},
    Effect{ProblemKind::doubtful_row, a_doubt},
    Effect{ProblemKind::guessed_text, a_doubt},
    Effect{ProblemKind::inner_padding, a_doubt},
    Effect{ProblemKind::input_changed, a_doubt},
    Effect{ProblemKind::overlapping_parts, a_doubt},
    Effect{ProblemKind::parts_differ, a_doubt},
    Effect{ProblemKind::unnumbered_parts, a_doubt},
};

Take effect_of(ProblemKind kind) {
    const auto* const row =
        std::find_if(effects.begin(), effects.end(), [kind](const Effect& effect) { return effect.kind == kind; });
    if (row != effects.end()) return row->take;
    switch (report::traits_of(kind).grade) {
        case Grade::lost:
            return a_gap;
        case Grade::damaged:
            return a_suspect_row;
        case Grade::repaired:
            break;
    }
    return a_repair;
}

struct Rule {
    bool (*applies)(const Proof& proof);
    Verdict verdict;
};

constexpr std::array rules = {
    Rule{[](const Proof& proof) { return !proof.begin || !proof.end || proof.gaps > 0; }, Verdict::incomplete},
    Rule{[](const Proof& proof) { return proof.size == Claim::differs || proof.checksum == Claim::differs; },
         Verdict::damaged},
    Rule{[](const Proof& proof) { return proof.rows.suspect > 0 || proof.foreign > 0 || proof.doubts > 0; },
         Verdict::damaged},
    Rule{[](const Proof& proof) { return proof.law == BodyLaw::broken; }, Verdict::damaged},
    Rule{[](const Proof& proof) { return proof.size == Claim::agrees || proof.checksum == Claim::agrees; },
         Verdict::verified},
    Rule{[](const Proof&) { return true; }, Verdict::whole},
};

}  // namespace

void count(Proof& proof, const report::Problem& problem) {
    (problem.settled ? a_repair : effect_of(problem.kind))(proof);
}

void count(Proof& proof, ProblemKind kind) {
    effect_of(kind)(proof);
}

Verdict verdict(const Proof& proof) {
    return std::find_if(rules.begin(), rules.end(), [&proof](const Rule& rule) { return rule.applies(proof); })
        ->verdict;
}

}  // namespace quill::codec
