#include "codec/recovery/mime_pieces.h"

#include "codec/base64/base64_lines.h"
#include "codec/recovery/content_name.h"
#include "codec/recovery/part_label.h"
#include "text/ascii.h"

#include <algorithm>
#include <map>
#include <set>

namespace quill::codec {
namespace {

constexpr std::size_t shortest_full_row = 60;  // characters, as encoders write them
constexpr std::size_t longest_row = 1024;
constexpr std::size_t first_characters = 64;
constexpr unsigned most_lines_after = 8;  ///< of other text, after the rows

/// A part that may be a piece.
struct Candidate {
    FoundFile* file = nullptr;
    bool ends_full = false;      ///< its last row is as long as its first, and not padded
    bool begins_a_file = false;  ///< its first bytes are those of a known kind of file

    std::uint32_t number() const { return file->label.number; }
    std::uint32_t total() const { return file->label.total; }
};

bool is_candidate(const FoundFile& file) {
    const Attachment& attachment = file.attachment;
    return attachment.format == Format::base64 && file.has_begin && file.has_end && !attachment.content_type.empty() &&
           !attachment.name.empty() && attachment.body.size() == 1;
}

std::string_view body_of(const FoundFile& file, std::span<const std::string_view> inputs) {
    const Range& range = file.attachment.body.front();
    return inputs[range.source].substr(range.begin, range.end - range.begin);
}

/// Returns the last row of Base64 in `body`, without a few lines of other text after it, such as a rule.
std::string_view last_row_of(std::string_view body) {
    body.remove_prefix(body.size() - std::min(body.size(), longest_row));
    std::string_view last;
    for (unsigned lines = 0; lines < most_lines_after; ++lines) {
        body = body.substr(0, body.find_last_not_of(" \t\r\n") + 1);
        last = body.substr(body.find_last_of("\r\n") + 1);
        if (last.empty() || (last.front() != '=' && is_base64_line(last))) break;
        body.remove_suffix(last.size());
    }
    return last;
}

Candidate examine(FoundFile& file, std::span<const std::string_view> inputs) {
    std::string_view body = body_of(file, inputs);
    body.remove_prefix(std::min(body.find_first_not_of(" \t\r\n"), body.size()));
    const std::string_view first = text::trim(body.substr(0, std::min(body.find_first_of("\r\n"), longest_row)));
    const std::string_view last = last_row_of(body);
    const bool ends_full = first.size() >= shortest_full_row && last.size() == first.size() && is_base64_line(last);
    const std::string_view beginning = first.substr(0, first_characters);
    const bool known = !extension_for_bytes(decode_base64_text(beginning)).empty();
    return {&file, ends_full && !last.ends_with('='), known};
}

/// Gives the candidates the numbers of their inputs, where each lies in one of its own.
void number_by_paths(std::vector<Candidate>& series, std::span<const std::string> paths) {
    const auto numbered = [](const Candidate& one) { return one.number() > 0; };
    if (paths.size() < 2 || std::any_of(series.begin(), series.end(), numbered)) return;
    std::set<std::uint32_t> sources;
    for (const Candidate& one : series) {
        const std::uint32_t source = one.file->attachment.body.front().source;
        if (!sources.insert(source).second || source >= paths.size()) return;
    }
    for (const Candidate& one : series) {
        one.file->label = label_of_path(paths[one.file->attachment.body.front().source]);
    }
}

/// Marks what a part that stands alone says of itself: a number, and a body that is not a whole file's.
void mark_alone(const Candidate& part) {
    if (part.total() < 2) return;
    const bool is_last = part.number() == part.total();
    if (!is_last && !part.ends_full) return;
    const bool is_text = part.file->attachment.content_type.starts_with("text/");
    part.file->has_begin = part.number() == 1 || part.begins_a_file || (is_last && is_text);
    part.file->has_end = is_last;
}

/// Returns true where the numbers do not say which parts belong together: all have one number, or parts of one number
/// differ, as those of two senders do.
bool are_unclear(std::span<const Candidate> series, std::span<const std::string_view> inputs) {
    std::map<std::uint32_t, std::string_view> bodies;
    bool differ = false;
    for (const Candidate& part : series) {
        const std::string_view body = body_of(*part.file, inputs);
        differ = differ || bodies.emplace(part.number(), body).first->second != body;
    }
    return differ || (bodies.size() == 1 && series.size() > 1);
}

/// Marks the parts of one name as pieces where one of them ends like a piece, and one begins like none.
void mark_series(std::vector<Candidate>& series, std::span<const std::string_view> inputs,
                 std::span<const std::string> paths) {
    const auto is_begun = [](const Candidate& part) { return part.begins_a_file; };
    const auto is_full = [](const Candidate& part) { return part.ends_full; };
    if (std::none_of(series.begin(), series.end(), is_full)) return;
    if (std::all_of(series.begin(), series.end(), is_begun)) return;
    number_by_paths(series, paths);
    if (std::all_of(series.begin(), series.end(), [](const Candidate& part) { return part.number() == 0; })) return;
    std::uint32_t highest = 0;
    for (const Candidate& part : series) highest = std::max({highest, part.number(), part.total()});
    const bool unclear = are_unclear(series, inputs);
    for (const Candidate& part : series) {
        if (unclear) {
            part.file->attachment.problems.push_back(
                {ProblemKind::unnumbered_parts, part.file->attachment.body.front().begin});
        } else {
            part.file->has_begin = part.number() == 1 || part.begins_a_file;
            part.file->has_end = part.number() == highest;
        }
    }
}

/// Marks rows of Base64 without any description as the part that the name of their input states, with its total.
void mark_bare_rows(FoundFile& file, const PartLabel& label) {
    file.label = label;
    file.has_begin = file.has_begin && label.number == 1;
    file.has_end = label.number == label.total;
}

/// Gives parts without numbers those of their input's name, if that states a total and the input contains one part.
void number_by_totals(std::span<FoundFile> files, std::span<const std::string> paths) {
    std::map<std::uint32_t, unsigned> parts;  // by source
    const auto counts = [](const FoundFile& file) {
        return file.attachment.format == Format::base64 && !file.attachment.body.empty();
    };
    for (const FoundFile& file : files) {
        if (counts(file)) ++parts[file.attachment.body.front().source];
    }
    for (FoundFile& file : files) {
        if (!counts(file) || file.label.number > 0) continue;
        const std::uint32_t source = file.attachment.body.front().source;
        const PartLabel label = source < paths.size() ? label_of_path(paths[source]) : PartLabel{};
        if (label.total < 2 || parts[source] > 1) continue;
        const bool bare = file.attachment.content_type.empty() && file.attachment.name.empty();
        if (bare) mark_bare_rows(file, label);
        if (is_candidate(file)) file.label = label;
    }
}

}  // namespace

void mark_mime_pieces(std::span<FoundFile> files, std::span<const std::string_view> inputs,
                      std::span<const std::string> paths) {
    number_by_totals(files, paths);
    std::map<std::string, std::vector<FoundFile*>> by_name;
    for (FoundFile& file : files) {
        if (is_candidate(file)) by_name[text::to_lower(file.attachment.name)].push_back(&file);
    }
    for (const auto& [name, same_name] : by_name) {
        if (same_name.size() == 1 && same_name.front()->label.total < 2) continue;
        std::vector<Candidate> series;
        for (FoundFile* file : same_name) series.push_back(examine(*file, inputs));
        if (series.size() == 1) {
            mark_alone(series.front());
        } else {
            mark_series(series, inputs, paths);
        }
        for (const Candidate& part : series) {
            const bool is_piece = !part.file->has_begin || !part.file->has_end;
            if (is_piece && part.number() > 0) part.file->label.file = name;
        }
    }
}

}  // namespace quill::codec
