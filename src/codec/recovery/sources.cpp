#include "codec/recovery/sources.h"

#include "codec/wrappings/line_signs.h"

#include <algorithm>
#include <utility>

namespace quill::codec {
namespace {

/// Returns true for results that are the text itself, in which marks and tags belong to the contents.
bool is_text(const Attachment& attachment) {
    return attachment.format == Format::identity || attachment.format == Format::quoted_printable;
}

}  // namespace

Result<Sources> Sources::open(std::span<const std::string> paths) {
    Sources out;
    for (const std::string& path : paths) {
        Result<files::MappedFile> file = files::MappedFile::open(path);
        if (!file) return Error{file.error().code, 0, path + ": " + file.error().text};
        out.bytes_.push_back(file->bytes());
        out.texts_.push_back({std::move(*file), out.files_++});
        out.paths_.push_back(path);
    }
    return out;
}

std::uint32_t Sources::add(Unwrapped unwrapped, std::uint32_t parent, const Wrapping& wrapping) {
    bytes_.push_back(unwrapped.text.bytes());
    paths_.push_back(paths_[parent]);
    texts_.push_back({std::move(unwrapped.text), parent, &wrapping, std::move(unwrapped.map)});
    return static_cast<std::uint32_t>(texts_.size() - 1);
}

PlainText Sources::begin_plain(std::uint32_t parent, OnUnwrapped on_unwrapped) const {
    return {texts_[parent].bytes, *spool_, std::move(on_unwrapped)};
}

std::uint32_t Sources::unwrap(std::uint32_t source, const OnUnwrapped& on_unwrapped) {
    for (unsigned depth = 0; depth < most_wrappings; ++depth) {
        const std::uint32_t before = source;
        const Sample sample(bytes_[source]);
        for (const Wrapping& wrapping : wrappings()) {
            if (!wrapping.detect(sample)) continue;
            PlainText plain = begin_plain(source, on_unwrapped);
            wrapping.unwrap(bytes_[source], plain);
            std::optional<Unwrapped> unwrapped = plain.finish();
            texts_[source].bytes.release_before(bytes_[source].size());
            out_of_room_ = out_of_room_ || (plain.stopped() && !plain.cancelled());
            if (!unwrapped) continue;
            source = add(std::move(*unwrapped), source, wrapping);
            break;
        }
        if (source == before) break;
    }
    return source;
}

std::uint32_t Sources::file_of(std::uint32_t source) const {
    while (texts_[source].parent != source) source = texts_[source].parent;
    return source;
}

FileOffset Sources::file_offset(std::uint32_t source, std::uint64_t at) const {
    for (; texts_[source].parent != source; source = texts_[source].parent) {
        at = static_cast<std::uint64_t>(texts_[source].map.origin_of(PlainOffset{at}));
    }
    return FileOffset{at};
}

/// Returns true if the wrapping of the text that holds all of `attachment` is inside its body only: what comes before
/// it is as it was in the wrapped text. A message is encoded with its header.
bool Sources::lies_within(const Attachment& attachment) const {
    if (attachment.body.size() != 1) return false;
    const Range& body = attachment.body.front();
    const Text& text = texts_[body.source];
    if (text.parent == body.source || body.begin < 2 || text.wrapping->kind == ProblemKind::encoded_message)
        return false;
    return text.map.is_unchanged(PlainOffset{body.begin - 2}, PlainOffset{body.begin});
}

/// Returns the source of the bytes of `range`, which is not empty, in the wrapped text.
Range Sources::range_before(const Range& range) const {
    const Text& text = texts_[range.source];
    const auto origin = [&](std::uint64_t at) {
        return static_cast<std::uint64_t>(text.map.origin_of(PlainOffset{at}));
    };
    return {origin(range.begin), origin(range.end - 1) + 1, text.parent};
}

/// Returns the end of a body in the wrapped text: before the line end of its last line, which is the same in both
/// texts, as tags at its end belong to the body.
std::uint64_t Sources::end_before(const Range& body) const {
    const Text& text = texts_[body.source];
    const std::string_view plain = bytes_[body.source];
    const std::string_view wrapped = bytes_[text.parent];
    if (body.end >= plain.size()) return wrapped.size();
    std::string_view rest = plain.substr(body.end);
    const TextLine line = next_line(rest);
    const auto next = static_cast<std::uint64_t>(text.map.origin_of(PlainOffset{body.end + line.end.size()}));
    if (!line.text.empty() || rest.empty()) return next;
    const std::string_view before = wrapped.substr(0, next);
    return next - (before.ends_with("\r\n") ? 2U : before.ends_with('\n') || before.ends_with('\r') ? 1U : 0U);
}

/// Reads the body of `attachment` from the wrapped text.
void Sources::step_back(Attachment& attachment) const {
    const Range body = attachment.body.front();
    const Text& text = texts_[body.source];
    for (Problem& problem : attachment.problems) {
        if (problem.source.value_or(body.source) != body.source) continue;
        problem.source = text.parent;
        problem.at_input = static_cast<std::uint64_t>(text.map.origin_of(PlainOffset{problem.at_input}));
    }
    Range before = range_before({body.begin - 1, body.end, body.source});
    ++before.begin;
    before.end = std::max(before.begin, end_before(body));
    attachment.body = {before};
}

void Sources::settle(Attachment& attachment) const {
    while (is_text(attachment) && lies_within(attachment)) step_back(attachment);
    std::vector<const Wrapping*> reported;
    bool guessed = false;
    for (Range range : attachment.body) {
        for (; texts_[range.source].parent != range.source && range.begin < range.end; range = range_before(range)) {
            const Text& text = texts_[range.source];
            const PlainOffset begin{range.begin};
            const PlainOffset end{range.end};
            if (text.map.is_unchanged(begin, end)) continue;
            guessed = guessed || text.map.is_guessed(begin, end);
            if (std::find(reported.begin(), reported.end(), text.wrapping) == reported.end())
                reported.push_back(text.wrapping);
        }
    }
    for (std::uint32_t& copy : attachment.copies_in) copy = file_of(copy);
    if (attachment.body.empty()) return;
    const std::uint64_t at = attachment.body.front().begin;
    const std::uint32_t source = attachment.body.front().source;
    for (const Wrapping* wrapping : reported) {
        attachment.problems.push_back({is_text(attachment) ? wrapping->of_text : wrapping->kind, at, {}, {}, source});
    }
    const bool altered = is_text(attachment) && !reported.empty() && attachment.body.size() > 1;
    if (guessed || altered) attachment.problems.push_back({ProblemKind::guessed_text, at, {}, {}, source});
}

void Sources::map_problems(std::span<const Range> body, std::vector<Problem>& problems) const {
    if (body.empty()) return;
    for (Problem& problem : problems) {
        const auto holds = [&](const Range& range) {
            return range.begin <= problem.at_input && problem.at_input <= range.end;
        };
        const auto found = std::find_if(body.begin(), body.end(), holds);
        const std::uint32_t source = problem.source.value_or((found == body.end() ? body.front() : *found).source);
        problem.at_input = static_cast<std::uint64_t>(file_offset(source, problem.at_input));
        if (problem.source) problem.source = file_of(source);
    }
}

}  // namespace quill::codec
