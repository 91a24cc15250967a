#include "piles/pile.h"

#include "piles/known_faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <utility>

namespace quill::tests {
namespace {

constexpr std::uint64_t piles = 1500;
constexpr std::uint64_t law_piles = 150;

void keep(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

/// Writes an example of a class into the directory that QUILL_KEEP_FINDINGS names, if it does.
void keep_example(const Pile& pile, std::string folder) {
    const char* const directory = std::getenv("QUILL_KEEP_FINDINGS");
    if (directory == nullptr) return;
    folder = directory + ("/pile_" + folder);
    if (!std::filesystem::create_directories(folder)) return;
    for (const auto& [name, bytes] : pile.inputs()) keep(folder + "/" + name, bytes);
    for (std::size_t i = 0; i < pile.series.size(); ++i) {
        if (pile.series[i].complete) keep(folder + "/truth" + std::to_string(i) + ".bin", pile.series[i].bytes);
    }
}

using Counts = std::map<PileScore, std::size_t>;

void print(std::string_view name, const Counts& counts) {
    std::cout << name;
    for (std::size_t score = 0; score < pile_score_names.size(); ++score) {
        const auto found = counts.find(static_cast<PileScore>(score));
        std::cout << '\t' << pile_score_names[score] << ' ' << (found == counts.end() ? 0 : found->second);
    }
    std::cout << '\n';
}

TEST(Pile, SeriesComeOutExactOrAreRightlyCalledIncomplete) {
    std::map<std::string, Counts> counts;
    std::map<std::string, std::size_t> faults;
    for (std::uint64_t seed = 0; seed < piles; ++seed) {
        const Pile one = pile(seed);
        const std::vector<PileScore> results = scores(one);
        const std::string_view trap = trap_names.at(static_cast<std::size_t>(one.trap));
        for (std::size_t i = 0; i < results.size(); ++i) {
            const Series& series = one.series[i];
            for (const std::string_view name : {std::string_view("all"), trap, series.format->name, series.habit->name,
                                                saved_names.at(static_cast<std::size_t>(one.saved))}) {
                ++counts[std::string(name)][results[i]];
            }
            if (results[i] != PileScore::false_whole && results[i] != PileScore::silent) continue;
            const std::string_view kind = pile_score_names.at(static_cast<std::size_t>(results[i]));
            const std::string name = std::string(kind) + " " + std::string(series.format->name);
            keep_example(one, name + " " + std::string(trap));
            ++faults[name];
        }
    }
    for (const auto& [name, row] : counts) print(name, row);
    for (const auto& [name, count] : faults) EXPECT_LE(count, known_pile_faults(name)) << "known: " << name;
    EXPECT_GE(counts["all"][PileScore::exact] + counts["all"][PileScore::rightly_said], least_right);
}

using Outcomes = std::multiset<std::pair<std::string, bool>>;

Outcomes outcomes(const Pile& pile) {
    Outcomes out;
    for (const RecoveredFile& file : recovered_files(pile.inputs())) out.emplace(file.bytes, file.is_trusted());
    return out;
}

/// A change of a pile that must not change its results.
struct Law {
    std::string_view name;
    void (*change)(Pile& pile, Random& random);
};

constexpr std::array laws = {
    Law{"order",
        [](Pile& pile, Random& random) {
            for (std::size_t i = pile.posts.size(); i > 1; --i)
                std::swap(pile.posts[i - 1], pile.posts[random.below(i)]);
        }},
    Law{"doubled",
        [](Pile& pile, Random& random) {
            pile.posts.push_back(random.of(pile.posts));
            pile.posts.back().file.insert(0, "copy of ");
        }},
    Law{"unrelated", [](Pile& pile, Random&) { pile.posts.push_back(words_post()); }},
};

TEST(Pile, OrderCopiesAndUnrelatedPostsChangeNothing) {
    std::map<std::string, std::size_t> faults;
    for (std::uint64_t seed = 0; seed < law_piles; ++seed) {
        Pile before = pile(50'000 + seed);
        before.saved = Saved::files;
        const Outcomes expected = outcomes(before);
        for (const Law& law : laws) {
            Pile after = before;
            Random random(seed);
            law.change(after, random);
            if (outcomes(after) == expected) continue;
            keep_example(after, "law " + std::string(law.name));
            ++faults["law " + std::string(law.name)];
        }
    }
    for (const auto& [name, count] : faults) EXPECT_LE(count, known_pile_faults(name)) << "known: " << name;
}

TEST(Pile, AMissingPartIsAlwaysReported) {
    std::map<std::string, std::size_t> faults;
    for (std::uint64_t seed = 0; seed < law_piles; ++seed) {
        Pile full = pile(60'000 + seed);
        if (full.trap != Trap::none && full.trap != Trap::words) continue;
        for (std::size_t i = 0; i < full.posts.size(); ++i) {
            Pile less = full;
            if (less.posts[i].number == 0) continue;
            const std::size_t series = less.posts[i].series;
            less.series[series].complete = false;
            less.posts.erase(less.posts.begin() + static_cast<std::ptrdiff_t>(i));
            const PileScore score = scores(less)[series];
            if (score != PileScore::false_whole && score != PileScore::silent) continue;
            const std::string name = "law missing " + std::string(less.series[series].format->name);
            keep_example(less, name);
            ++faults[name];
        }
    }
    for (const auto& [name, count] : faults) EXPECT_LE(count, known_pile_faults(name)) << "known: " << name;
}

}  // namespace
}  // namespace quill::tests
