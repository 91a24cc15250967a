#include "codec/recovery/recover.h"

#include "codec/recovery/content_name.h"
#include "codec/recovery/decode.h"
#include "codec/recovery/disguise.h"
#include "codec/recovery/find.h"
#include "codec/recovery/part_join.h"
#include "files/path.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

namespace quill::codec {
namespace {

constexpr std::size_t first_bytes = 48;

std::uint64_t size_of(std::span<const Range> ranges) {
    std::uint64_t size = 0;
    for (const Range& range : ranges) size += range.end - range.begin;
    return size;
}

/// Moves `more` to the end of `files`, without a second array if these are the first.
void append(std::vector<FoundFile>& files, std::vector<FoundFile>&& more) {
    if (files.empty()) {
        files = std::move(more);
    } else {
        std::move(more.begin(), more.end(), std::back_inserter(files));
    }
}

/// Returns the problem, of a result or of the inputs as a whole, that an input has changed.
Problem changed_problem(bool cut_short, std::uint32_t input) {
    return {cut_short ? ProblemKind::input_cut : ProblemKind::input_changed, 0, {}, {}, input};
}

}  // namespace

Result<Recovery> Recovery::open(std::span<const std::string> paths, const OnProgress& progress, Texts texts) {
    Result<Sources> sources = Sources::open(paths);
    if (!sources) return sources.error();
    Recovery out(std::move(*sources));
    std::uint64_t total = 0;
    for (const std::string_view bytes : out.sources_.bytes()) total += bytes.size();
    std::vector<FoundFile> files;
    std::uint64_t before = 0;
    for (std::uint32_t source = 0; source < out.sources_.files(); ++source) {
        Result<Found> found = find(out.sources_, source, texts,
                                   [&](std::uint64_t offset) { return !progress || progress(before + offset, total); });
        if (!found) return found.error();
        const files::MappedFile& input = out.sources_.text(source);
        if (input.cut_short() || input.changed()) found->problems.push_back(changed_problem(input.cut_short(), source));
        before += input.bytes().size();
        append(files, std::move(found->files));
        std::move(found->problems.begin(), found->problems.end(), std::back_inserter(out.problems_));
    }
    out.take(join_parts(std::move(files), out.sources_.bytes(), out.sources_.paths()).files);
    return out;
}

void Recovery::take(std::vector<FoundFile> files) {
    attachments_.reserve(files.size());
    for (FoundFile& file : files) {
        Attachment& attachment = file.attachment;
        sources_.settle(attachment);
        const std::uint64_t at = attachment.body.empty() ? 0 : attachment.body.front().begin;
        if (std::optional<Problem> disguise = disguise_of(attachment.name, at)) {
            attachment.problems.push_back(std::move(*disguise));
        }
        attachment.name = attachment_name(attachment.name);
        if (attachment.name.empty()) {
            attachment.name = made_up_name(attachment.message_text, attachment.content_type,
                                           decode_first_bytes(attachment, sources_.bytes(), first_bytes));
        }
        attachments_.push_back(std::move(attachment));
    }
}

OnRead Recovery::release_behind(const Attachment& attachment, const OnProgress& progress) const {
    return
        [this, &attachment, &progress, total = size_of(attachment.body)](std::uint32_t source, std::uint64_t offset) {
            sources_.text(source).release_before(offset);
            if (!progress) return true;
            std::uint64_t done = 0;
            for (const Range& range : attachment.body) {
                const bool current = range.source == source && range.begin <= offset && offset <= range.end;
                done += current ? offset - range.begin : range.end - range.begin;
                if (current) break;
            }
            return progress(done, total);
        };
}

Outcome Recovery::check(const Attachment& attachment, const OnProgress& progress) const {
    Outcome outcome = decode(
        attachment, sources_.bytes(), [](std::string_view) { return true; }, release_behind(attachment, progress));
    note_changes(attachment, outcome);
    sources_.map_problems(attachment.body, outcome.problems);
    return outcome;
}

std::vector<std::uint32_t> Recovery::inputs_of(const Attachment& attachment) const {
    std::vector<std::uint32_t> out;
    std::set<std::uint32_t> seen;
    for (const Range& range : attachment.body) {
        const std::uint32_t input = sources_.file_of(range.source);
        if (seen.insert(input).second) out.push_back(input);
    }
    return out;
}

/// Looks in the plain text first, since a wrapping may be around the header too, and then in the user's file.
Origin Recovery::origin_of(const Attachment& attachment) const {
    if (attachment.body.empty()) return {};
    const auto [begin, end, source, quote] = attachment.body.front();
    const auto origin_at = [&](std::uint32_t text, std::uint64_t offset) {
        return origins_.try_emplace(text, sources_.bytes()[text]).first->second.at(offset);
    };
    const Origin inner = origin_at(source, begin);
    if (inner != Origin{}) return inner;
    return origin_at(sources_.file_of(source), static_cast<std::uint64_t>(sources_.file_offset(source, begin)));
}

/// Revokes the verdict if an input has changed.
void Recovery::note_changes(const Attachment& attachment, Outcome& outcome) const {
    for (const std::uint32_t input : inputs_of(attachment)) {
        const bool cut_short = sources_.text(input).cut_short();
        if (!cut_short && !sources_.text(input).changed()) continue;
        outcome.add(changed_problem(cut_short, input));
    }
}

Result<Recovered> Recovery::write(const Attachment& attachment, const std::string& path,
                                  files::OnCollision on_collision, const OnProgress& progress,
                                  const FindCopy& find_copy) const {
    Result<files::AtomicFile> file = files::AtomicFile::create(path);
    if (!file) return file.error();
    bool stopped = false;
    const OnRead on_read = release_behind(attachment, progress);
    Recovered out;
    out.format = attachment.format;
    out.outcome = decode(
        attachment, sources_.bytes(), [&](std::string_view bytes) { return file->write(bytes); },
        [&](std::uint32_t source, std::uint64_t offset) { return !(stopped = !on_read(source, offset)); });
    if (stopped) return Error{ErrorCode::cancelled, 0, "Stopped"};
    for (const std::uint32_t input : inputs_of(attachment)) {
        if (sources_.text(input).cut_short()) return files::changed_while_read();
        out.sources.push_back(sources_.paths()[input]);
    }
    if (file->failed()) return file->error();
    note_changes(attachment, out.outcome);
    sources_.map_problems(attachment.body, out.outcome.problems);
    if (out.outcome.size == 0 && out.outcome.verdict >= Verdict::damaged) {
        const auto at = attachment.body.empty()
                            ? FileOffset{}
                            : sources_.file_offset(attachment.body.front().source, attachment.body.front().begin);
        return Error{ErrorCode::bad_input, static_cast<std::uint64_t>(at), "Nothing could be decoded"};
    }
    const std::optional<std::string> copy = find_copy ? find_copy(*file) : std::nullopt;
    const Result<std::string> published =
        copy ? Result(*copy) : file->publish(on_collision, files::Durability::cached, &last_numbers_);
    if (!published) return published.error();
    out.already_there = copy.has_value();
    out.path = *published;
    out.name = files::name_of(out.path);
    return out;
}

}  // namespace quill::codec
