#include "encoder/merge.h"

#include "files/atomic_file.h"
#include "files/mapped_file.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/reader.h"
#include "text/writer.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace quill::encoder {
namespace {

constexpr std::size_t chunk_size = std::size_t{1} << 20U;
constexpr std::string_view part_mark = "=ypart beg";
constexpr std::string_view end_mark = "=yend";

void report(const OnMerge& progress, double of_file, double of_all) {
    if (progress) progress(of_file, of_all);
}

double fraction(std::uint64_t done, std::uint64_t total) {
    return total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total);
}

/// The number behind "part=" in a `=ybegin` line; the field usually comes first. 0 where there is none.
unsigned part_number(std::string_view begin_line) {
    constexpr std::string_view field = " part=";
    const std::size_t at = begin_line.find(field);
    if (at == std::string_view::npos) return 0;
    const std::string_view digits = begin_line.substr(at + field.size());
    unsigned number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

struct Input {
    std::string path;
    files::MappedFile file;
};

/// Opens what can be opened; the rest is left out of the merge with the system's reason.
std::vector<Input> open_all(std::span<const std::string> paths, Merged& merged) {
    std::vector<Input> inputs;
    for (const std::string& path : paths) {
        Result<files::MappedFile> file = files::MappedFile::open(path);
        if (file) {
            inputs.push_back({path, std::move(*file)});
        } else {
            merged.left_out.push_back({path, file.error().text});
        }
    }
    return inputs;
}

bool append_lines(const files::MappedFile& file, files::AtomicFile& out, const std::function<void(double)>& progress) {
    text::Reader reader(file.bytes());
    std::string chunk;
    while (const auto line = reader.line()) {
        text::append_line(chunk, *line);
        if (chunk.size() < chunk_size) continue;
        if (!out.write(chunk)) return false;
        chunk.clear();
        file.release_before(reader.offset());
        progress(fraction(reader.offset(), file.bytes().size()));
    }
    return out.write(chunk);
}

bool append_bytes(const files::MappedFile& file, std::uint64_t from, std::uint64_t to, files::AtomicFile& out,
                  const std::function<void(double)>& progress) {
    const std::string_view bytes = file.bytes();
    for (std::uint64_t at = from; at < to; at += chunk_size) {
        if (!out.write(bytes.substr(at, std::min<std::uint64_t>(chunk_size, to - at)))) return false;
        file.release_before(at);
        progress(fraction(at, bytes.size()));
    }
    return true;
}

/// Where the part's data ends: at the first "=yend" behind `from`, or at the part's end.
std::uint64_t data_end(std::string_view bytes, const YencPart& part, std::uint64_t from) {
    const std::string_view inside = bytes.substr(from, part.end - from);
    const std::size_t at = inside.find(end_mark);
    return at == std::string_view::npos ? part.end : from + at;
}

void tell_outsiders(const std::vector<YencPart>& all, const std::vector<YencPart>& series,
                    const std::vector<Input>& inputs, Merged& merged) {
    for (const YencPart& part : all) {
        const bool taken = std::any_of(series.begin(), series.end(),
                                       [&](const YencPart& p) { return p.file == part.file && p.data == part.data; });
        if (!taken)
            merged.left_out.push_back(
                {inputs[part.file].path, "Part " + std::to_string(part.number) + " has no place in the series"});
    }
    const unsigned last = series.empty() ? 0 : series.back().number;
    for (unsigned number = 1; number < last; ++number) {
        const bool there =
            std::any_of(series.begin(), series.end(), [&](const YencPart& p) { return p.number == number; });
        if (!there) merged.missing.push_back(number);
    }
}

Error cut_short(const Input& input) {
    return {ErrorCode::io, 0, files::name_of(input.path) + " became shorter while it was read"};
}

Result<Merged> finish(files::AtomicFile& out, Merged merged) {
    merged.size = out.size();
    const Result<std::string> published = out.publish(files::OnCollision::replace);
    if (!published) return published.error();
    return merged;
}

}  // namespace

std::vector<YencPart> find_parts(std::string_view post, std::size_t file) {
    std::vector<YencPart> parts;
    text::Reader reader(post);
    std::string_view before;
    std::size_t before_at = 0;
    std::size_t line_at = 0;
    while (const auto line = reader.line()) {
        if (line->size() > part_mark.size() && text::starts_with_ignoring_case(*line, part_mark)) {
            if (!parts.empty()) parts.back().end = before_at;
            parts.push_back({file, part_number(before), parts.empty() ? 0 : before_at, reader.offset(), post.size()});
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

Result<Merged> merge_text(std::span<const std::string> paths, const std::string& output, const OnMerge& progress) {
    Merged merged;
    const std::vector<Input> inputs = open_all(paths, merged);
    if (inputs.empty()) return Error{ErrorCode::not_found, 0, "None of the files could be read"};
    Result<files::AtomicFile> out = files::AtomicFile::create(output);
    if (!out) return out.error();
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const double of_all = fraction(i, inputs.size() - 1);
        report(progress, 0, of_all);
        if (!append_lines(inputs[i].file, *out, [&](double of_file) { report(progress, of_file, of_all); })) {
            return out->error();
        }
        if (inputs[i].file.cut_short()) return cut_short(inputs[i]);
    }
    merged.parts = inputs.size();
    return finish(*out, std::move(merged));
}

Result<Merged> merge_yenc(std::span<const std::string> paths, const std::string& output, const OnMerge& progress) {
    Merged merged;
    const std::vector<Input> inputs = open_all(paths, merged);
    std::vector<YencPart> all;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const std::vector<YencPart> parts = find_parts(inputs[i].file.bytes(), i);
        if (parts.empty()) {
            return Error{ErrorCode::bad_input, 0,
                         files::name_of(inputs[i].path) + " is not a multipart yEnc encoded file."};
        }
        all.insert(all.end(), parts.begin(), parts.end());
    }
    const std::vector<YencPart> series = ordered(all, std::max(all.size(), paths.size()));
    tell_outsiders(all, series, inputs, merged);
    if (series.empty() || inputs.size() < 2) {
        return Error{ErrorCode::bad_argument, 0, "Fewer than two of the files are parts of one series"};
    }

    Result<files::AtomicFile> out = files::AtomicFile::create(output);
    if (!out) return out.error();
    for (std::size_t i = 0; i < series.size(); ++i) {
        const YencPart& part = series[i];
        const files::MappedFile& file = inputs[part.file].file;
        const bool last = i > 0 && i + 1 == series.size();
        const std::uint64_t from = i == 0 ? part.head : part.data;
        const std::uint64_t to = last ? part.end : data_end(file.bytes(), part, from);
        const double of_all = fraction(i, series.size() - 1);
        if (!append_bytes(file, from, to, *out, [&](double of_file) { report(progress, of_file, of_all); })) {
            return out->error();
        }
        if (file.cut_short()) return cut_short(inputs[part.file]);
    }
    merged.parts = series.size();
    return finish(*out, std::move(merged));
}

bool hold_yenc_parts(std::span<const std::string> paths) {
    Merged unread;
    const std::vector<Input> inputs = open_all(paths, unread);
    const auto holds_part = [](const Input& input) { return !find_parts(input.file.bytes(), 0).empty(); };
    return !inputs.empty() && std::all_of(inputs.begin(), inputs.end(), holds_part);
}

}  // namespace quill::encoder
