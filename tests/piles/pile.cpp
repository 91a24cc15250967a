#include "piles/pile.h"

#include <algorithm>

namespace quill::tests {
namespace {

constexpr std::array<std::string_view, 6> seams = {"",          "-- \nAnn Other\n",
                                                   "--\nann\n", "______________________________\nSent by a list.\n",
                                                   "*****\n",   "\nGet your free mail at http://www.example.com/\n"};

struct Sender {
    std::string_view line, date;
};
constexpr std::array senders = {
    Sender{"Ann Other <ann@example.net>", "Tue, 3 Mar 1998 10:20:3"},
    Sender{"joe@example.org (Joe)", "Sat, 7 Mar 1998 21:02:1"},
    Sender{"Kim <kim@example.com>", "Mon, 9 Mar 1998 01:44:0"},
};

std::string noise_of(Random& random, std::size_t size) {
    std::string out;
    while (out.size() < size) out.push_back(static_cast<char>(random.next()));
    return out;
}

std::string head(std::size_t sender, std::size_t number, const std::string& subject, std::size_t again = 0) {
    const std::string id = std::to_string(sender) + "." + std::to_string(number) + "." + std::to_string(again);
    return "From: " + std::string(senders[sender].line) + "\nDate: " + std::string(senders[sender].date) +
           std::to_string(number % 10) + " +0000\nMessage-ID: <" + id + "@example.net>\nSubject: " + subject + "\n";
}

/// Adds the posts of a series.
void add_series(Pile& pile, Random& random, const Series& series, std::size_t parts) {
    const std::string_view seam = random.once_in(2) ? seams[0] : random.of(seams);
    const std::size_t index = pile.series.size(), article = 10'000 + random.below(5000);
    const std::vector<PostBody> bodies = series.format->split(series.bytes, series.name, parts);
    for (std::size_t part = 0; part < parts; ++part) {
        const std::size_t number = part + 1;
        const std::size_t total = pile.trap == Trap::totals && part == parts / 2 ? parts + 1 : parts;
        const std::string subject = filled(series.habit->subject, series.name, number, total);
        std::string text = head(index, number, subject) + bodies[part].fields + "\n";
        if (pile.trap == Trap::sentence && part == 0 && bodies[part].fields.empty()) {
            text += "Part 7 of 12 is late, sorry.\n\n";
        }
        const std::string file = series.habit->file.empty() ? std::to_string(article + 3 * part + index) + ".txt"
                                                            : filled(series.habit->file, series.name, number, total);
        const bool plain = bodies[part].fields.empty();
        pile.posts.push_back({file, text + bodies[part].text + std::string(plain ? seam : ""), index, number});
    }
    pile.series.push_back(series);
}

void set_trap(Pile& pile, Random& random) {
    const std::size_t at = random.below(pile.posts.size());
    const Post post = pile.posts[at];
    Post copy = post;
    copy.file.insert(0, "copy of ");
    switch (pile.trap) {
        case Trap::missing:
            pile.series[post.series].complete = false;
            pile.posts.erase(pile.posts.begin() + static_cast<std::ptrdiff_t>(at));
            break;
        case Trap::doubled:
            pile.posts.push_back(copy);
            break;
        case Trap::cut_double:
            copy.text.resize(copy.text.find("\n\n") + 2 + (copy.text.size() - copy.text.find("\n\n")) / 2);
            copy.text += "\n";
            pile.posts.push_back(copy);
            break;
        case Trap::repost:
            copy.text.insert(copy.text.find("Subject: ") + 9, "REPOST: ");
            copy.text.replace(copy.text.find("@example.net>"), 1, ".again@");
            pile.posts.push_back(copy);
            break;
        case Trap::words:
            pile.posts.push_back(words_post());
            break;
        default:
            break;
    }
}

template <class Row, class Accept>
const Row& chosen(Random& random, std::span<const Row> table, Accept&& accept) {
    while (true) {
        const Row& row = random.of(table);
        if (accept(row)) return row;
    }
}

}  // namespace

Post words_post() {
    return {"words.txt", head(2, 9, "where is part 7 of 12?") + "\nPart 7 of 12 is late. Does anyone have it (7/12)?\n",
            99, 0};
}

Pile pile(std::uint64_t seed) {
    Random random(seed);
    Pile pile;
    pile.trap = static_cast<Trap>(random.below(trap_names.size()));
    pile.saved = random.once_in(2) ? Saved::files : static_cast<Saved>(random.below(saved_names.size()));
    const std::size_t count = pile.trap == Trap::two_posters ? 2 : 1 + random.below(2);
    for (std::size_t i = 0; i < count; ++i) {
        Series series;
        series.format = &random.of(part_formats());
        series.habit = &chosen(random, habits(), [&](const Habit& habit) {
            return (habit.has_total || series.format->ends) && (habit.file.empty() || pile.saved == Saved::files);
        });
        series.name = i == 0 ? "flower.jpg" : "letter.zip";
        if (pile.trap == Trap::two_posters && i == 1) {
            series = pile.series[0];
            if (!series.habit->file.empty()) series.habit = &habits()[0];
        }
        const std::size_t parts = 2 + random.below(5);
        series.bytes = noise_of(random, parts * 450 + random.below(900));
        add_series(pile, random, series, parts);
    }
    set_trap(pile, random);
    for (std::size_t i = pile.posts.size(); i > 1; --i) std::swap(pile.posts[i - 1], pile.posts[random.below(i)]);
    return pile;
}

Inputs Pile::inputs() const {
    Inputs out;
    if (saved == Saved::files) {
        for (const Post& post : posts) out.emplace_back(post.file, post.text);
        return out;
    }
    std::string all;
    for (const Post& post : posts) {
        if (saved == Saved::mailbox) all += "From ann@example.net Tue Mar  3 10:20:30 1998\n";
        if (saved == Saved::rnews) all += "#! rnews " + std::to_string(post.text.size()) + "\n";
        if (saved == Saved::rules) all += "==============================\n";
        all += post.text;
        if (saved != Saved::rnews) all += "\n";
    }
    out.emplace_back("posts.txt", all);
    return out;
}

namespace {

bool is_original(const Pile& pile, const RecoveredFile& file) {
    return std::any_of(pile.series.begin(), pile.series.end(),
                       [&file](const Series& series) { return series.complete && series.bytes == file.bytes; });
}

/// Returns true if the first or the last bytes of `file` are some of the series' own.
bool is_made_of(const Series& series, const RecoveredFile& file) {
    constexpr std::size_t enough = 12;
    const std::string& bytes = file.bytes;
    return series.bytes.find(bytes.substr(0, enough)) != std::string::npos ||
           series.bytes.find(bytes.substr(bytes.size() - std::min(enough, bytes.size()))) != std::string::npos;
}

PileScore score_of(const Pile& pile, const Series& series, const std::vector<RecoveredFile>& results) {
    const auto any = [&results](auto&& is_so) { return std::any_of(results.begin(), results.end(), is_so); };
    if (any([&](const RecoveredFile& file) {
            return file.is_trusted() && !is_original(pile, file) && is_made_of(series, file);
        })) {
        return PileScore::false_whole;
    }
    if (any([&](const RecoveredFile& file) { return file.is_trusted() && file.bytes == series.bytes; })) {
        return PileScore::exact;
    }
    if (results.empty()) return PileScore::none;
    if (!any([](const RecoveredFile& file) { return !file.is_trusted(); })) return PileScore::silent;
    return series.complete ? PileScore::said : PileScore::rightly_said;
}

}  // namespace

std::vector<PileScore> scores(const Pile& pile) {
    const std::vector<RecoveredFile> results = recovered_files(pile.inputs());
    std::vector<PileScore> out;
    for (const Series& series : pile.series) out.push_back(score_of(pile, series, results));
    return out;
}

}  // namespace quill::tests
