#include "damage/damaged_text.h"
#include "damage/known_faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>

namespace quill::tests {
namespace {

constexpr std::uint64_t cases = 5000;

void keep(const std::string& folder, const std::string& name, const std::string& bytes) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
}

/// Writes an example of a class into the directory that QUILL_KEEP_FINDINGS names, if it does.
void keep_example(const DamagedText& text, std::string folder) {
    const char* const directory = std::getenv("QUILL_KEEP_FINDINGS");
    if (directory == nullptr) return;
    std::replace_if(
        folder.begin(), folder.end(), [](char c) { return c == ':' || c == ',' || c == ' '; }, '_');
    folder.insert(0, directory + std::string("/"));
    const BuiltText built = build(text);
    if (std::filesystem::exists(folder)) return;
    keep(folder, "in.txt", built.bytes);
    for (std::size_t i = 0; i < built.originals.size(); ++i) {
        keep(folder, "truth" + std::to_string(i) + ".bin", built.originals[i]);
    }
    keep(folder, "container", std::string(text.container->name) + "\n");
}

void print(std::string_view name, const std::map<Score, std::size_t>& counts) {
    std::cout << name;
    for (std::size_t score = 0; score < score_names.size(); ++score) {
        const auto found = counts.find(static_cast<Score>(score));
        std::cout << '\t' << score_names[score] << ' ' << (found == counts.end() ? 0 : found->second);
    }
    std::cout << '\n';
}

TEST(Damage, NothingIsCalledWholeThatTheTextDisproves) {
    std::map<std::string, std::map<Score, std::size_t>> counts;
    std::map<std::string, std::size_t> faults;
    for (std::uint64_t seed = 0; seed < cases; ++seed) {
        const DamagedText text = damaged_text(seed);
        const Score result = score(text);
        ++counts["all"][result];
        ++counts[std::string(text.writing->name)][result];
        for (const auto& [mutation, own] : text.mutations) ++counts[std::string(mutation->name)][result];
        if (result != Score::false_whole && result != Score::accused && result != Score::silent) continue;
        const DamagedText least = minimal(text);
        keep_example(least, std::string(score_names.at(static_cast<std::size_t>(result))) + " " + class_of(least));
        if (result == Score::false_whole) ++faults[class_of(least)];
    }
    for (const auto& [name, row] : counts) print(name, row);
    for (const auto& [name, count] : faults) {
        EXPECT_LE(count, known_faults(name)) << "falsely whole: " << name;
    }
    EXPECT_GE(counts["all"][Score::exact], least_exact);
    EXPECT_LE(counts["all"][Score::accused], most_accused);
    EXPECT_LE(counts["all"][Score::silent], most_silent);
}

TEST(Damage, UndamagedTextsAreExactAndStrictlyReadable) {
    std::map<std::string, std::size_t> faults;
    for (const Writing& writing : writings()) {
        for (const Container& container : containers()) {
            for (std::uint64_t seed = 0; seed < 12 && fits(container, writing); ++seed) {
                const DamagedText text{&writing, &container, seed, {}};
                const BuiltText built = build(text);
                if (score(text) != Score::exact) ++faults[class_of(text)];
                if (writing.read == nullptr) continue;
                EXPECT_EQ(built.honest, built.originals) << writing.name << " in " << container.name << " " << seed;
            }
        }
    }
    for (const auto& [name, count] : faults) EXPECT_LE(count, known_faults(name)) << "not exact: " << name;
}

}  // namespace
}  // namespace quill::tests
