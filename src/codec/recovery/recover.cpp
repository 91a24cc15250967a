#include "codec/recovery/recover.h"

#include "codec/input/tagged_lines.h"
#include "codec/mail/nested_message.h"
#include "codec/recovery/content_name.h"
#include "codec/recovery/decode.h"
#include "codec/recovery/disguise.h"
#include "codec/recovery/part_join.h"
#include "codec/scan/scanner.h"
#include "files/path.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

namespace quill::codec {
namespace {

constexpr std::size_t first_bytes = 48;

std::vector<std::string_view> bytes_of(const std::vector<files::MappedFile>& inputs) {
    std::vector<std::string_view> out;
    out.reserve(inputs.size());
    for (const files::MappedFile& input : inputs) out.push_back(input.bytes());
    return out;
}

std::uint64_t size_of(std::span<const Range> ranges) {
    std::uint64_t size = 0;
    for (const Range& range : ranges) size += range.end - range.begin;
    return size;
}

/// Moves `more` to the end of `files`, without a second array where these are the first.
void append(std::vector<FoundFile>& files, std::vector<FoundFile>&& more) {
    if (files.empty()) {
        files = std::move(more);
    } else {
        std::move(more.begin(), more.end(), std::back_inserter(files));
    }
}

/// Says of all that was found in a mail with tags for line ends what that means for it.
void tell_tags(Found& found) {
    for (FoundFile& file : found.files) {
        Attachment& attachment = file.attachment;
        const std::uint64_t at = attachment.body.empty() ? 0 : attachment.body.front().begin;
        const bool text = attachment.format == Format::identity || attachment.format == Format::quoted_printable;
        attachment.problems.push_back({text ? ProblemKind::tagged_text : ProblemKind::tagged_lines, at});
    }
}

/// The inputs that hold a part of it, each once, in the order of the parts.
std::vector<std::uint32_t> sources_of(const Attachment& attachment) {
    std::vector<std::uint32_t> out;
    std::set<std::uint32_t> seen;
    for (const Range& range : attachment.body) {
        if (seen.insert(range.source).second) out.push_back(range.source);
    }
    return out;
}

/// Sets the input of all problems.
void name_source(Found& found, std::uint32_t source) {
    for (Problem& problem : found.problems) problem.source = source;
    for (FoundFile& file : found.files) {
        for (Problem& problem : file.attachment.problems) problem.source = source;
    }
}

/// Says of a result, or of the inputs as a whole, that an input did not stay as it was.
Problem changed_problem(bool cut_short) {
    return {cut_short ? ProblemKind::input_cut : ProblemKind::input_changed};
}

}  // namespace

Result<Recovery> Recovery::open(std::span<const std::string> paths, const OnProgress& progress, Texts texts) {
    Recovery out;
    std::uint64_t total = 0;
    for (const std::string& path : paths) {
        Result<files::MappedFile> input = files::MappedFile::open(path);
        if (!input) return Error{input.error().code, 0, path + ": " + input.error().text};
        total += input->bytes().size();
        out.inputs_.push_back(std::move(*input));
        out.paths_.push_back(path);
    }
    std::vector<FoundFile> files;
    std::uint64_t before = 0;
    for (std::uint32_t source = 0; source < out.inputs_.size(); ++source) {
        const files::MappedFile& input = out.inputs_[source];
        const std::string_view bytes = input.bytes();
        const Range all{0, bytes.size(), source};
        std::vector<Segment> rows = tagged_lines(bytes, all);
        const bool tagged = !rows.empty();
        LineCursor cursor(
            tagged ? std::move(rows) : std::vector<Segment>{{bytes, all}},
            [&](const Segment&, std::uint64_t offset) {
                input.release_before(offset);
                return !progress || progress(before + offset, total);
            },
            [&](const Segment&, std::uint64_t offset, char* to, std::size_t size) {
                return input.read(offset, to, size);
            });
        Found found = scan(cursor, texts);
        if (cursor.stopped()) return Error{ErrorCode::cancelled, 0, "Stopped"};
        if (tagged) tell_tags(found);
        if (input.cut_short() || input.changed()) found.problems.push_back(changed_problem(input.cut_short()));
        before += input.bytes().size();
        input.release_before(input.bytes().size());
        const auto encoded = [](const FoundFile& file) { return is_encoded_message(file.attachment); };
        if (std::any_of(found.files.begin(), found.files.end(), encoded)) {
            open_encoded_messages(found, out.inputs_[source], source, texts);
        }
        name_source(found, source);
        append(files, std::move(found.files));
        std::move(found.problems.begin(), found.problems.end(), std::back_inserter(out.problems_));
    }
    out.bytes_ = bytes_of(out.inputs_);
    out.take(join_parts(std::move(files), out.bytes_, out.paths_).files);
    return out;
}

void Recovery::take(std::vector<FoundFile> files) {
    attachments_.reserve(files.size());
    for (FoundFile& file : files) {
        Attachment& attachment = file.attachment;
        const std::uint64_t at = attachment.body.empty() ? 0 : attachment.body.front().begin;
        if (std::optional<Problem> disguise = disguise_of(attachment.name, at)) {
            attachment.problems.push_back(std::move(*disguise));
        }
        attachment.name = attachment_name(attachment.name);
        if (attachment.name.empty()) {
            attachment.name = made_up_name(attachment.message_text, attachment.content_type,
                                           decode_first_bytes(attachment, bytes_, first_bytes));
        }
        attachments_.push_back(std::move(attachment));
    }
}

ReadInput Recovery::reader() const {
    return [this](std::uint32_t source, std::uint64_t offset, char* out, std::size_t size) {
        return inputs_[source].read(offset, out, size);
    };
}

OnRead Recovery::release_behind(const Attachment& attachment, const OnProgress& progress) const {
    return
        [this, &attachment, &progress, total = size_of(attachment.body)](std::uint32_t source, std::uint64_t offset) {
            inputs_[source].release_before(offset);
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
        attachment, bytes_, [](std::string_view) { return true; }, release_behind(attachment, progress), reader());
    note_changes(attachment, outcome);
    return outcome;
}

/// Takes the verdict back where an input did not stay as it was.
void Recovery::note_changes(const Attachment& attachment, Outcome& outcome) const {
    for (const std::uint32_t source : sources_of(attachment)) {
        const bool cut_short = inputs_[source].cut_short();
        if (!cut_short && !inputs_[source].changed()) continue;
        outcome.problems.push_back(changed_problem(cut_short));
        outcome.problems.back().source = source;
        outcome.verdict = std::max(outcome.verdict, cut_short ? Verdict::incomplete : Verdict::damaged);
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
        attachment, bytes_, [&](std::string_view bytes) { return file->write(bytes); },
        [&](std::uint32_t source, std::uint64_t offset) { return !(stopped = !on_read(source, offset)); }, reader());
    if (stopped) return Error{ErrorCode::cancelled, 0, "Stopped"};
    for (const std::uint32_t source : sources_of(attachment)) {
        if (inputs_[source].cut_short()) return files::changed_while_read();
        out.sources.push_back(paths_[source]);
    }
    if (file->failed()) return file->error();
    note_changes(attachment, out.outcome);
    if (out.outcome.size == 0 && out.outcome.verdict >= Verdict::damaged) {
        const std::uint64_t at = attachment.body.empty() ? 0 : attachment.body.front().begin;
        return Error{ErrorCode::bad_input, at, "Nothing could be decoded"};
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
