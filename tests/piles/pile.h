#pragma once

#include "piles/part_formats.h"
#include "support/recovered_files.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Piles of posts with known contents.
namespace quill::tests {

struct Series {
    const PartFormat* format = nullptr;
    const Habit* habit = nullptr;
    std::string name;
    std::string bytes;
    bool complete = true;  ///< no part of it is missing in the pile
};

struct Post {
    std::string file;  ///< the name of its saved file
    std::string text;
    std::size_t series = 0;
    std::size_t number = 0;  ///< from 1; 0 for a post outside all series
};

enum class Trap : std::uint8_t { none, missing, two_posters, doubled, cut_double, repost, totals, words, sentence };
inline constexpr std::array<std::string_view, 9> trap_names = {
    "none", "missing", "two-posters", "doubled", "cut-double", "repost", "totals", "words", "sentence"};

/// How posts are saved.
enum class Saved : std::uint8_t { files, mailbox, one_after_another, rnews, rules };
inline constexpr std::array<std::string_view, 5> saved_names = {"files", "mailbox", "joined", "rnews", "rules"};

struct Pile {
    Trap trap = Trap::none;
    Saved saved = Saved::files;
    std::vector<Series> series;
    std::vector<Post> posts;

    Inputs inputs() const;
};

Pile pile(std::uint64_t seed);

/// Returns a post of only words, which mentions parts.
Post words_post();

enum class PileScore : std::uint8_t { exact, rightly_said, said, none, silent, false_whole };
inline constexpr std::array<std::string_view, 6> pile_score_names = {"exact", "rightly-said", "said",
                                                                     "none",  "silent",       "FALSE"};

/// Returns one score for each series. A trusted result that is not an original makes a series with its bytes
/// `false_whole`.
std::vector<PileScore> scores(const Pile& pile);

}  // namespace quill::tests
