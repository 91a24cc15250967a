#include "codec/recovery/proof.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace quill::codec {
namespace {

using report::Problem;
using report::ProblemKind;
using report::Verdict;

struct VerdictCase {
    std::string name;
    Proof proof;
    Verdict verdict;
};

class VerdictOfProof : public testing::TestWithParam<VerdictCase> {};

TEST_P(VerdictOfProof, IsTheFirstRowOfTheTableThatApplies) {
    EXPECT_EQ(verdict(GetParam().proof), GetParam().verdict);
}

/// A proof with all that there can be for a result, to take something away from.
Proof full_proof() {
    return {.law = BodyLaw::kept, .rows = {9, 0, 0}, .size = Claim::agrees, .checksum = Claim::agrees};
}

template <class Change>
Proof changed(Change&& change) {
    Proof proof = full_proof();
    change(proof);
    return proof;
}

const VerdictCase verdict_cases[] = {
    {"Everything", full_proof(), Verdict::verified},
    {"ASizeAlone", {.law = BodyLaw::kept, .size = Claim::agrees}, Verdict::verified},
    {"AChecksumAlone", {.checksum = Claim::agrees}, Verdict::verified},
    {"NothingStated", {}, Verdict::whole},
    {"ALawfulBody", {.law = BodyLaw::kept, .rows = {9, 0, 0}}, Verdict::whole},
    {"Repairs", {.law = BodyLaw::kept, .rows = {9, 3, 0}}, Verdict::whole},
    {"NoBegin", changed([](Proof& p) { p.begin = false; }), Verdict::incomplete},
    {"NoEnd", changed([](Proof& p) { p.end = false; }), Verdict::incomplete},
    {"AGap", changed([](Proof& p) { p.gaps = 1; }), Verdict::incomplete},
    {"AnotherSize", changed([](Proof& p) { p.size = Claim::differs; }), Verdict::damaged},
    {"AnotherChecksum", changed([](Proof& p) { p.checksum = Claim::differs; }), Verdict::damaged},
    {"ASuspectRow", changed([](Proof& p) { p.rows.suspect = 1; }), Verdict::damaged},
    {"AForeignRow", changed([](Proof& p) { p.foreign = 1; }), Verdict::damaged},
    {"ADoubt", changed([](Proof& p) { p.doubts = 1; }), Verdict::damaged},
    {"ABrokenLaw", changed([](Proof& p) { p.law = BodyLaw::broken; }), Verdict::damaged},
    {"AGapAndASuspectRow", {.rows = {0, 0, 1}, .gaps = 1}, Verdict::incomplete},
};
INSTANTIATE_TEST_SUITE_P(Cases, VerdictOfProof, testing::ValuesIn(verdict_cases),
                         [](const auto& param) { return param.param.name; });

TEST(Proof, LosesByEachProblemWhatItsGradeSays) {
    for (int i = 0; i <= static_cast<int>(ProblemKind::not_written); ++i) {
        const auto kind = static_cast<ProblemKind>(i);
        Proof proof;
        count(proof, kind);
        const Verdict expected[] = {Verdict::whole, Verdict::damaged, Verdict::incomplete};
        EXPECT_EQ(verdict(proof), expected[static_cast<int>(report::traits_of(kind).grade)])
            << report::traits_of(kind).word;
    }
}

TEST(Proof, CountsASettledProblemAsARepair) {
    Proof proof = full_proof();
    Problem problem{ProblemKind::uneven_lines, 7};
    settle(problem, report::Evidence::checksum);
    count(proof, problem);
    EXPECT_EQ(proof.rows.repaired, 1U);
    EXPECT_EQ(verdict(proof), Verdict::verified);
}

}  // namespace
}  // namespace quill::codec
