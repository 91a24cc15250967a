#include "codec/recovery/part_join.h"

#include "codec/recovery/message_join.h"
#include "codec/recovery/mime_pieces.h"
#include "codec/recovery/part_copies.h"
#include "codec/recovery/part_label.h"
#include "codec/recovery/part_report.h"
#include "codec/recovery/yenc_join.h"
#include "codec/scan/text_scan.h"
#include "files/path.h"
#include "text/ascii.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace quill::codec {
namespace {

constexpr unsigned telling_lines = 8;

// Pieces of a file ----------------------------------------------------------------------------------------------------

/// Returns true for BinHex data, without resource forks: they go with their data forks.
bool is_binhex_data(const FoundFile& file) {
    return file.attachment.format == Format::binhex && !file.attachment.resource_fork;
}

bool is_piece(const FoundFile& file) {
    const Format format = file.attachment.format;
    return (!file.has_begin || !file.has_end) &&
           (format == Format::uu || format == Format::xx || format == Format::base64 || is_binhex_data(file));
}

/// The common properties of pieces of one file.
using Key = std::tuple<Format, std::string, std::uint32_t>;

Key key_of(const FoundFile& file, std::span<const std::string> paths, PartLabel& label) {
    label = file.label;
    if (label.number == 0 && !file.attachment.body.empty()) {
        const std::uint32_t source = file.attachment.body.front().source;
        label = paths.size() > 1 ? label_of_path(paths[source]) : PartLabel{};
        if (label.number == 0) label.file = "\n" + std::to_string(source);
    }
    return {file.attachment.format, text::to_lower(label.file), label.total};
}

struct Piece {
    std::uint32_t number = 0;
    std::size_t index = 0;  ///< among all files
    std::string_view path;  ///< of its input
};

/// Orders pieces by their numbers, and copies by their inputs' names, so that the order of the inputs changes nothing;
/// pieces without numbers stay in the order of the inputs.
bool goes_before(const Piece& a, const Piece& b) {
    if (a.number != b.number) return a.number < b.number;
    return a.number > 0 && a.path < b.path;
}

void report_guess(Attachment& attachment, const Place& at) {
    const auto said = [](const Problem& problem) { return problem.kind == ProblemKind::unnumbered_parts; };
    if (std::any_of(attachment.problems.begin(), attachment.problems.end(), said)) return;
    report(attachment, ProblemKind::unnumbered_parts, at);
}

/// Appends `piece`, whose number is `number`, to `whole`, whose last piece so far is `last`.
void append_piece(FoundFile& whole, FoundFile& piece, std::uint32_t last, std::uint32_t number, std::uint32_t total) {
    if (number > last + 1 && last > 0) add_missing(whole.attachment, last + 1, total, begin_of(piece));
    if (number == 0) report_guess(whole.attachment, begin_of(piece));
    std::vector<Range>& body = whole.attachment.body;
    body.insert(body.end(), piece.attachment.body.begin(), piece.attachment.body.end());
    std::move(piece.attachment.problems.begin(), piece.attachment.problems.end(),
              std::back_inserter(whole.attachment.problems));
    whole.attachment.copies_in.insert(whole.attachment.copies_in.end(), piece.attachment.copies_in.begin(),
                                      piece.attachment.copies_in.end());
    whole.attachment.keeps_blanks = whole.attachment.keeps_blanks || piece.attachment.keeps_blanks;
    if (piece.attachment.stated_size) whole.attachment.stated_size = piece.attachment.stated_size;
    if (piece.attachment.stated_sum) whole.attachment.stated_sum = piece.attachment.stated_sum;
    whole.has_end = piece.has_end;
    whole.label.number = number;
}

/// Joins the pieces, with different numbers or none, in this order; marks the joined ones in `taken`.
void join_row(std::vector<FoundFile>& files, const std::vector<Piece>& pieces, std::uint32_t total,
              std::set<std::size_t>& taken) {
    FoundFile* whole = nullptr;
    const Piece* last = nullptr;
    bool guess = false;  // two files were open at once, and no total distinguishes them
    const auto close = [&] {
        if (whole == nullptr) return;
        if (!whole->has_end && last->number > 0 && last->number < total) {
            add_missing(whole->attachment, last->number + 1, total, begin_of(files[last->index]));
        }
    };
    for (const Piece& piece : pieces) {
        FoundFile& file = files[piece.index];
        if (whole != nullptr && !whole->has_end && !file.has_begin) {
            append_piece(*whole, file, last->number, piece.number, total);
            if (guess) report_guess(whole->attachment, begin_of(file));
            taken.insert(piece.index);
        } else {
            close();
            guess = total == 0 && whole != nullptr && !whole->has_end;
            whole = &file;
            if (!file.has_begin && piece.number > 1) add_missing(file.attachment, 1, total, begin_of(file));
        }
        last = &piece;
    }
    close();
}

/// Joins the pieces of one key. If there are different copies of a part, makes further files of them.
void join_group(std::vector<FoundFile>& files, std::vector<Piece>& pieces, std::uint32_t total,
                std::span<const std::string_view> inputs, std::set<std::size_t>& taken) {
    std::stable_sort(pieces.begin(), pieces.end(), goes_before);
    std::vector<std::vector<Piece>> rows(1);
    for (auto first = pieces.begin(); first != pieces.end();) {
        const auto last =
            std::find_if(first, pieces.end(), [&](const Piece& piece) { return piece.number != first->number; });
        if (first->number == 0) {
            rows.front().insert(rows.front().end(), first, last);
            first = last;
            continue;
        }
        std::vector<std::size_t> indices;
        std::transform(first, last, std::back_inserter(indices), [](const Piece& piece) { return piece.index; });
        const PartCopies copies = choose_copies(files, indices, inputs);
        taken.insert(copies.left_out.begin(), copies.left_out.end());
        rows.resize(std::max(rows.size(), copies.kept.size()));
        for (std::size_t row = 0; row < copies.kept.size(); ++row) {
            rows[row].push_back({first->number, copies.kept[row], {}});
            FoundFile& file = files[copies.kept[row]];
            report_copies(file.attachment, copies, first->number, begin_of(file).offset);
            if (row == 0) note_copies(file.attachment, copies.left_out, files);
        }
        first = last;
    }
    for (const std::vector<Piece>& row : rows) join_row(files, row, total, taken);
}

std::set<std::uint32_t> numbers_of(const std::vector<Piece>& pieces) {
    std::set<std::uint32_t> numbers;
    for (const Piece& piece : pieces) numbers.insert(piece.number);
    return numbers;
}

/// Returns true if the pieces of two keys number different parts.
bool are_disjoint(const std::vector<Piece>& a, const std::vector<Piece>& b) {
    const std::set<std::uint32_t> numbers = numbers_of(a);
    return !numbers.contains(0) && std::none_of(b.begin(), b.end(), [&](const Piece& piece) {
        return piece.number == 0 || numbers.contains(piece.number);
    });
}

/// Unites the pieces whose totals differ by one and whose numbers don't repeat, as posters miscount, under the total
/// that more of them state.
void unite_totals(std::map<Key, std::vector<Piece>>& groups) {
    for (auto first = groups.begin(); first != groups.end();) {
        const auto& [format, name, total] = first->first;
        const auto second = groups.find({format, name, total + 1});
        if (total == 0 || second == groups.end() || !are_disjoint(first->second, second->second)) {
            ++first;
            continue;
        }
        const std::set<std::uint32_t> higher = numbers_of(second->second);
        const bool keeps_first = numbers_of(first->second).size() > higher.size() && *higher.rbegin() <= total;
        std::vector<Piece>& kept = keeps_first ? first->second : second->second;
        const std::vector<Piece>& other = keeps_first ? second->second : first->second;
        kept.insert(kept.end(), other.begin(), other.end());
        first = keeps_first ? groups.erase(second) : groups.erase(first);
    }
}

// Later parts of BinHex files -----------------------------------------------------------------------------------------

bool has_begun(const std::vector<FoundFile>& files, const std::vector<Piece>& pieces) {
    return std::any_of(pieces.begin(), pieces.end(), [&](const Piece& piece) { return files[piece.index].has_begin; });
}

/// Returns true unless the labels show that the two parts belong to different files, `later` being after `first`.
bool may_follow(const FoundFile& first, const FoundFile& later) {
    const PartLabel& a = first.label;
    const PartLabel& b = later.label;
    const bool file = a.file.empty() || b.file.empty() || text::to_lower(a.file) == text::to_lower(b.file);
    const bool total = a.total == 0 || b.total == 0 || a.total == b.total;
    return file && total && (b.number == 0 || b.number > a.number);
}

/// Joins the parts of BinHex files without matching labels: in their order, or by their numbers if they can only belong
/// to one file.
void join_loose_binhex(std::vector<FoundFile>& files, std::set<std::size_t>& taken) {
    std::vector<std::size_t> loose;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (is_binhex_data(files[i]) && is_piece(files[i]) && !taken.contains(i)) loose.push_back(i);
    }
    const auto begun = [&](std::size_t i) { return files[i].has_begin; };
    const auto firsts = std::count_if(loose.begin(), loose.end(), begun);
    if (firsts == 0) return;
    if (firsts == 1) {
        const auto rank = [&](std::size_t i) { return std::pair(!begun(i), files[i].label.number); };
        std::stable_sort(loose.begin(), loose.end(), [&](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
    }
    FoundFile* first = nullptr;
    for (const std::size_t i : loose) {
        if (begun(i)) {
            first = &files[i];
        } else if (first != nullptr && !first->has_end && may_follow(*first, files[i])) {
            const PartLabel& label = files[i].label;
            append_piece(*first, files[i], first->label.number, label.number, label.total);
            taken.insert(i);
        }
    }
}

/// Gives resource forks the parts that were found for the data forks before them.
void complete_resource_forks(std::vector<FoundFile>& files, std::set<std::size_t>& taken) {
    for (std::size_t i = 1; i < files.size(); ++i) {
        if (!files[i].attachment.resource_fork || !is_binhex_data(files[i - 1])) continue;
        files[i].attachment.body = files[i - 1].attachment.body;
        files[i].attachment.problems = files[i - 1].attachment.problems;
        if (taken.contains(i - 1)) taken.insert(i);
    }
}

/// Returns true if the file has so many full lines of BinHex data that it can hardly be other text.
bool has_binhex_lines(const FoundFile& file, std::span<const std::string_view> inputs) {
    std::vector<Segment> segments;
    for (const Range& range : file.attachment.body) segments.push_back({inputs[range.source], range});
    LineCursor cursor(std::move(segments));
    unsigned lines = 0;
    Line line;
    while (lines < telling_lines && cursor.next(line)) {
        if (is_binhex_line(line.text)) ++lines;
    }
    return lines >= telling_lines;
}

/// Returns true for a piece that no first part has claimed and that may be other text as well.
bool is_unasked(const FoundFile& file, std::span<const std::string_view> inputs) {
    if (!file.tentative) return false;
    return file.label.number < 2 || file.label.total == 0 || !has_binhex_lines(file, inputs);
}

/// Reports what the remaining pieces lack. The checksums of BinHex show whether its end is present.
void judge_ends(FoundFile& file) {
    Attachment& attachment = file.attachment;
    if (!is_piece(file) || (is_binhex_data(file) && file.has_begin)) return;
    if (!file.has_begin) {
        attachment.headless = is_binhex_data(file);
        report(attachment, ProblemKind::missing_begin, begin_of(file));
    }
    if (!file.has_end && attachment.format == Format::base64) {
        attachment.cut_off = true;
    } else if (!file.has_end && !attachment.headless) {
        report(attachment, ProblemKind::missing_end, end_of(file));
    }
}

}  // namespace

Found join_parts(std::vector<FoundFile> files, std::span<const std::string_view> inputs,
                 std::span<const std::string> paths) {
    Found out;
    files = join_messages(std::move(files), inputs);
    yenc::join_posts(files, inputs);
    mark_mime_pieces(files, inputs, paths);
    std::map<Key, std::vector<Piece>> groups;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!is_piece(files[i])) continue;
        PartLabel label;
        const Key key = key_of(files[i], paths, label);
        const bool placed = !files[i].attachment.body.empty() && files[i].attachment.body.front().source < paths.size();
        const std::string_view path =
            placed ? std::string_view(paths[files[i].attachment.body.front().source]) : std::string_view();
        groups[key].push_back({label.number, i, path});
    }
    unite_totals(groups);
    std::set<std::size_t> taken;
    const auto waits = [&](const Key& key, const std::vector<Piece>& pieces) {
        return std::get<Format>(key) == Format::binhex && !has_begun(files, pieces);
    };
    for (auto& [key, pieces] : groups) {
        if (!waits(key, pieces)) join_group(files, pieces, std::get<std::uint32_t>(key), inputs, taken);
    }
    join_loose_binhex(files, taken);
    for (auto& [key, pieces] : groups) {
        if (!waits(key, pieces)) continue;
        std::erase_if(pieces, [&](const Piece& piece) { return taken.contains(piece.index); });
        join_group(files, pieces, std::get<std::uint32_t>(key), inputs, taken);
    }
    complete_resource_forks(files, taken);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (taken.contains(i) || is_unasked(files[i], inputs)) continue;
        judge_ends(files[i]);
        if (kept != i) files[kept] = std::move(files[i]);
        ++kept;
    }
    files.resize(kept);
    out.files = std::move(files);
    return out;
}

}  // namespace quill::codec
