#include "damage/damaged_text.h"

#include "support/strict_reading.h"

#include <algorithm>

namespace quill::tests {
namespace {

/// Returns bytes for a comparison: quoted-printable doesn't state which line ends a file had, or whether empty lines
/// around it belong to it.
std::string comparable(const Writing& writing, std::string bytes) {
    if (writing.transfer != Transfer::quoted_printable) return bytes;
    std::erase(bytes, '\r');
    bytes.resize(bytes.find_last_not_of('\n') + 1);
    return bytes.substr(std::min(bytes.find_first_not_of('\n'), bytes.size()));
}

void note_readings(const DamagedText& text, const Rows& rows, BuiltText& built) {
    for (unsigned file = 0; file < text.container->files; ++file) {
        if (auto reading = strict_reading(*text.writing, *text.container, rows, file)) {
            built.honest.push_back(comparable(*text.writing, *std::move(reading)));
        }
    }
}

bool is_among(const std::vector<std::string>& all, const std::string& one) {
    return std::find(all.begin(), all.end(), one) != all.end();
}

template <class Table, class Accept>
const auto& chosen(Random& random, const Table& table, Accept&& accept) {
    while (true) {
        const auto& row = random.of(table);
        if (accept(row)) return row;
    }
}

bool loses_bytes(const Mutation& mutation, const Writing& writing) {
    if (mutation.name == "row-lowered" && writing.name.starts_with("uu")) return false;
    return mutation.loss == Loss::bytes ||
           (mutation.loss == Loss::form && writing.transfer == Transfer::quoted_printable);
}

}  // namespace

DamagedText damaged_text(std::uint64_t seed) {
    Random random(seed);
    DamagedText text;
    text.writing = &random.of(writings());
    text.container = &chosen(random, containers(), [&](const Container& c) { return fits(c, *text.writing); });
    text.seed = random.next();
    for (std::size_t count = 1 + random.below(3); count > 0; --count) {
        const Mutation& mutation = random.of(mutations());
        text.mutations.emplace_back(&mutation, random.next());
    }
    std::sort(text.mutations.begin(), text.mutations.end());
    return text;
}

BuiltText build(const DamagedText& text) {
    Random random(text.seed);
    BuiltText built;
    std::vector<Rows> files;
    for (unsigned file = 0; file < text.container->files; ++file) {
        std::string bytes = payload(random, *text.writing);
        const bool bare = text.writing->transfer == Transfer::base64 && !text.container->takes_fields;
        while (bare && (bytes.size() < 240 || bytes.size() % 57 == 0)) bytes.push_back('q');  // else nothing marks it
        files.push_back(text.writing->write(bytes, std::string(1, static_cast<char>('a' + file)) + ".bin"));
        for (Row& row : files.back()) row.file = file;
        built.originals.push_back(comparable(*text.writing, bytes));
    }
    Rows rows = text.container->wrap(*text.writing, files);
    bool noted = false;
    for (const auto& [mutation, seed] : text.mutations) {
        const bool loss = loses_bytes(*mutation, *text.writing);
        built.lost = built.lost || loss;
        if (!loss && !noted) note_readings(text, rows, built);
        noted = noted || !loss;
        Random own(seed);
        if (!rows.empty()) mutation->apply(rows, own);
    }
    note_readings(text, rows, built);
    built.bytes = bytes_of(rows);
    return built;
}

Score score(const DamagedText& text) {
    const BuiltText built = build(text);
    std::vector<std::string> trusted, doubted;
    const Inputs inputs{{"in.txt", built.bytes}};
    for (const RecoveredFile& file : recovered_files(inputs)) {
        (file.is_trusted() ? trusted : doubted).push_back(comparable(*text.writing, file.bytes));
    }
    bool undetectable = false;
    for (const std::string& bytes : trusted) {
        if (is_among(built.originals, bytes)) continue;
        if (!is_among(built.honest, bytes)) return Score::false_whole;
        undetectable = true;
    }
    const auto all_in = [&built](const std::vector<std::string>& found) {
        return std::all_of(built.originals.begin(), built.originals.end(),
                           [&found](const std::string& bytes) { return is_among(found, bytes); });
    };
    if (all_in(trusted)) return Score::exact;
    if (undetectable) return Score::undetectable;
    std::vector<std::string> all = trusted;
    all.insert(all.end(), doubted.begin(), doubted.end());
    if (all_in(all)) return built.lost ? Score::doubted : Score::accused;
    if (!doubted.empty()) return Score::said;
    return trusted.empty() ? Score::none : Score::silent;
}

DamagedText minimal(DamagedText text) {
    const Score wanted = score(text);
    for (std::size_t at = text.mutations.size(); at-- > 0 && text.mutations.size() > 1;) {
        DamagedText less = text;
        less.mutations.erase(less.mutations.begin() + static_cast<std::ptrdiff_t>(at));
        if (score(less) == wanted) text = less;
    }
    for (const Container& container : containers()) {
        DamagedText simpler = text;
        simpler.container = &container;
        if (fits(container, *text.writing) && score(simpler) == wanted) return simpler;
    }
    return text;
}

std::string class_of(const DamagedText& text) {
    const std::string_view change = text.mutations.empty() ? "nothing" : text.mutations[0].first->name;
    return std::string(text.writing->family) + ": " + std::string(change);
}

}  // namespace quill::tests
