#include "encoder/merge.h"

#include "encoder/part_numbers.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "text/ascii.h"
#include "text/reader.h"
#include "text/writer.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>

namespace quill::encoder {
namespace {

constexpr std::size_t chunk_size = std::size_t{1} << 20U;
constexpr std::string_view part_mark = "=ypart beg";
constexpr std::string_view end_mark = "=yend";

double fraction(std::uint64_t done, std::uint64_t total) {
    return total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total);
}

/// Returns the number after `field` in a `=ybegin` line, 0 if there is none.
unsigned number_after(std::string_view field, std::string_view begin_line) {
    const std::size_t at = begin_line.find(field);
    if (at == std::string_view::npos) return 0;
    const std::string_view digits = begin_line.substr(at + field.size());
    unsigned number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// The state of copying the pieces of a merge into the output.
struct Copy {
    files::AtomicFile& out;
    const OnMerge& progress;
    MergeProgress at;

    bool goes_on(double of_piece) {
        at.of_piece = of_piece;
        return !progress || progress(at);
    }
};

Error cancelled() {
    return {ErrorCode::cancelled, 0, "The merge was stopped"};
}

Error changed_meanwhile(const std::string& path) {
    return {ErrorCode::io, 0, files::name_of(path) + " changed while it was read"};
}

void leave_out(Merged& merged, const std::string& path, const Error& error) {
    merged.left_out.push_back({path, error.text, true});
}

/// Copies `bytes`, a piece of `file`, line by line, each ended by CR LF.
Status copy_lines(Copy& copy, const files::MappedFile& file, std::string_view bytes, bool unix_text) {
    const auto begin = static_cast<std::size_t>(bytes.data() - file.bytes().data());
    text::Reader reader(bytes, unix_text);
    std::string chunk;
    while (const auto line = reader.line()) {
        text::append_line(chunk, *line);
        if (chunk.size() < chunk_size) continue;
        if (!copy.out.write(chunk)) return copy.out.error();
        chunk.clear();
        file.release_before(begin + reader.offset());
        if (!copy.goes_on(fraction(reader.offset(), bytes.size()))) return cancelled();
    }
    if (!copy.out.write(chunk)) return copy.out.error();
    return Done{};
}

Status copy_bytes(Copy& copy, const files::MappedFile& file, std::string_view bytes) {
    const auto begin = static_cast<std::size_t>(bytes.data() - file.bytes().data());
    for (std::size_t at = 0; at < bytes.size(); at += chunk_size) {
        if (!copy.out.write(bytes.substr(at, chunk_size))) return copy.out.error();
        file.release_before(begin + at);
        if (!copy.goes_on(fraction(at, bytes.size()))) return cancelled();
    }
    return Done{};
}

/// A file of yEnc parts, unchanged since they were found.
struct Post {
    std::string path;
    std::size_t size = 0;
    bool unix_text = false;
};

struct FoundParts {
    std::vector<Post> posts;
    std::vector<YencPart> parts;
};

/// Returns the parts in the readable files of `paths`.
Result<FoundParts> findord(std::span<const std::string> paths, Merged& merged) {
    FoundParts found;
    for (const std::string& path : paths) {
        const Result<files::MappedFile> file = files::MappedFile::open(path);
        if (!file) {
            leave_out(merged, path, file.error());
            continue;
        }
        const std::vector<YencPart> parts = find_parts(file->bytes(), found.posts.size());
        if (parts.empty()) {
            return Error{ErrorCode::bad_input, 0, files::name_of(path) + " is not a multipart yEnc encoded file."};
        }
        found.parts.insert(found.parts.end(), parts.begin(), parts.end());
        found.posts.push_back({path, file->bytes().size(), text::is_unix_text(file->bytes())});
    }
    return found;
}

/// Reports which parts are not in the series, and which of its numbers are missing.
void report_gaps(const FoundParts& found, const std::vector<YencPart>& series, Merged& merged) {
    std::set<unsigned> there;
    for (const YencPart& part : found.parts) {
        there.insert(part.number);
        const auto same_number = std::lower_bound(series.begin(), series.end(), part.number,
                                                  [](const YencPart& p, unsigned n) { return p.number < n; });
        const bool is_double = same_number != series.end() && same_number->number == part.number;
        if (is_double && same_number->file == part.file && same_number->data == part.data) continue;
        merged.left_out.push_back(
            {found.posts[part.file].path, "Part " + std::to_string(part.number) +
                                              (is_double ? " was found before" : " has no place in the series")});
    }
    PartNumbers numbers;
    for (const YencPart& part : series) numbers.add(part.number, part.total);
    merged.missing = numbers.missing();
    std::erase_if(merged.missing, [&](unsigned number) { return there.contains(number); });
}

/// Returns true if some of the parts are Unix text and others are not. Joined unchanged, the line feeds of the former
/// would be data.
bool differ_in_line_ends(const FoundParts& found, const std::vector<YencPart>& series) {
    const auto is_unix = [&](const YencPart& part) { return found.posts[part.file].unix_text; };
    return std::any_of(series.begin(), series.end(), is_unix) && !std::all_of(series.begin(), series.end(), is_unix);
}

/// Returns the end of the part's data: the first "=yend" after `from`, or the part's end.
std::uint64_t data_end(std::string_view bytes, const YencPart& part, std::uint64_t from) {
    const std::string_view inside = bytes.substr(from, part.end - from);
    const std::size_t at = inside.find(end_mark);
    return at == std::string_view::npos ? part.end : from + at;
}

/// Copies a part: the first of a series with its header, the last one with its trailer.
Status copyPart(Copy& copy, const Post& post, const YencPart& part, bool with_crlf) {
    const Result<files::MappedFile> file = files::MappedFile::open(post.path);
    if (!file) return Error{file.error().code, 0, files::name_of(post.path) + ": " + file.error().text};
    if (file->bytes().size() != post.size) return changed_meanwhile(post.path);
    const bool first = copy.at.index == 0;
    const bool lastFile = !first && copy.at.index + 1 == copy.at.count;
    const std::uint64_t from = first ? part.head : part.data;
    const std::uint64_t to = lastFile ? part.end : data_end(file->bytes(), part, from);
    const std::string_view bytes = file->bytes().substr(from, to - from);
    const Status copied =
        with_crlf && post.unix_text ? copy_lines(copy, *file, bytes, true) : copy_bytes(copy, *file, bytes);
    return file->changed() ? Status(changed_meanwhile(post.path)) : copied;
}

/// Begins the output of a merge, in a directory where a killed run may have left unfinished ones.
Result<files::AtomicFile> begin_output(const std::string& output) {
    files::remove_abandoned(files::dir_of(files::resolved(output)));
    return files::AtomicFile::create_output(output);
}

Result<Merged> finish(files::AtomicFile& out, Merged merged, files::OnCollision on_collision) {
    merged.size = out.size();
    const Result<std::string> published = out.publish(on_collision);
    if (!published) return published.error();
    return merged;
}

/// Returns "2, 4-6, 9"; only the first rows of many.
std::string rows_of(const std::vector<unsigned>& numbers) {
    constexpr unsigned most_rows = 20;
    std::string out;
    unsigned rows = 0;
    for (auto first = numbers.begin(); first != numbers.end(); ++rows) {
        if (rows == most_rows) return out + " and others";
        auto last = first;
        while (last + 1 != numbers.end() && last[1] == *last + 1) ++last;
        out += (out.empty() ? "" : ", ") + std::to_string(*first);
        if (last != first) out += "-" + std::to_string(*last);
        first = last + 1;
    }
    return out;
}

}  // namespace

std::vector<std::string> doubts_about(const Merged& merged) {
    std::vector<std::string> out;
    if (merged.missing.size() == 1) out.push_back("Part " + rows_of(merged.missing) + " was not found");
    if (merged.missing.size() > 1) out.push_back("Parts " + rows_of(merged.missing) + " were not found");
    if (!merged.in_order) out.emplace_back("The parts are not in the order of their numbers");
    return out;
}

std::vector<YencPart> find_parts(std::string_view post, std::size_t file) {
    std::vector<YencPart> parts;
    text::Reader reader(post);
    std::string_view before;
    std::size_t before_at = 0;
    std::size_t line_at = 0;
    while (const auto line = reader.line()) {
        if (line->size() > part_mark.size() && text::starts_with_ignoring_case(*line, part_mark)) {
            // Of two `=ypart` lines in a row the second has no `=ybegin` line of its own.
            const std::uint64_t head = parts.empty() ? 0 : std::max<std::uint64_t>(before_at, parts.back().data);
            if (!parts.empty()) parts.back().end = head;
            parts.push_back({file, number_after(" part=", before), number_after(" total=", before), head,
                             reader.offset(), post.size()});
        }
        before = *line;
        before_at = line_at;
        line_at = reader.offset();
    }
    return parts;
}

std::vector<YencPart> ordered(const std::vector<YencPart>& parts, std::size_t most) {
    std::vector<std::optional<YencPart>> by_number(most);
    for (const YencPart& part : parts) {
        const bool in_series = part.number >= 1 && part.number <= by_number.size();
        if (in_series && !by_number[part.number - 1]) by_number[part.number - 1] = part;
    }
    std::vector<YencPart> series;
    for (const auto& part : by_number) {
        if (part) series.push_back(*part);
    }
    return series;
}

Result<Merged> merge_text(std::span<const std::string> paths, const std::string& output, const OnMerge& progress,
                          files::OnCollision on_collision) {
    Merged merged;
    Result<files::AtomicFile> out = begin_output(output);
    if (!out) return out.error();
    Copy copy{*out, progress, {0, paths.size(), 0}};
    PartNumbers numbers;
    for (; copy.at.index < paths.size(); ++copy.at.index) {
        const std::string& path = paths[copy.at.index];
        if (!copy.goes_on(0)) return cancelled();
        const Result<files::MappedFile> file = files::MappedFile::open(path);
        if (!file) {
            leave_out(merged, path, file.error());
            continue;
        }
        const Status copied = copy_lines(copy, *file, file->bytes(), text::is_unix_text(file->bytes()));
        if (file->changed()) return changed_meanwhile(path);
        if (!copied) return copied.error();
        numbers.add_parts_of(file->bytes(), path);
        ++merged.parts;
    }
    merged.missing = numbers.missing();
    merged.in_order = numbers.in_order();
    if (merged.parts == 0) return Error{ErrorCode::not_found, 0, "None of the files could be read"};
    return finish(*out, std::move(merged), on_collision);
}

Result<Merged> merge_yenc(std::span<const std::string> paths, const std::string& output, const OnMerge& progress,
                          files::OnCollision on_collision) {
    Merged merged;
    const Result<FoundParts> found = findord(paths, merged);
    if (!found) return found.error();
    const std::vector<YencPart> series = ordered(found->parts, std::max(found->parts.size(), paths.size()));
    report_gaps(*found, series, merged);
    if (series.empty() || found->posts.size() < 2) {
        return Error{ErrorCode::bad_argument, 0, "Fewer than two of the files are parts of one series"};
    }

    Result<files::AtomicFile> out = begin_output(output);
    if (!out) return out.error();
    const bool with_crlf = differ_in_line_ends(*found, series);
    Copy copy{*out, progress, {0, series.size(), 0}};
    for (; copy.at.index < series.size(); ++copy.at.index) {
        const YencPart& part = series[copy.at.index];
        if (!copy.goes_on(0)) return cancelled();
        const Status copied = copyPart(copy, found->posts[part.file], part, with_crlf);
        if (!copied) return copied.error();
    }
    merged.parts = series.size();
    return finish(*out, std::move(merged), on_collision);
}

bool hold_yenc_parts(std::span<const std::string> paths) {
    bool any = false;
    for (const std::string& path : paths) {
        const Result<files::MappedFile> file = files::MappedFile::open(path);
        if (!file) continue;
        if (find_parts(file->bytes(), 0).empty()) return false;
        any = true;
    }
    return any;
}

}  // namespace quill::encoder
