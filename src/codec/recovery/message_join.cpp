#include "codec/recovery/message_join.h"

#include "codec/recovery/part_copies.h"
#include "codec/recovery/part_report.h"
#include "codec/scan/scanner.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

namespace quill::codec {
namespace {

/// The pieces of one message in order, without duplicate numbers.
struct MessagePieces {
    std::vector<const FoundFile*> pieces;
    std::vector<std::pair<std::uint32_t, PartCopies>> copies;  ///< of the duplicate numbers
};

MessagePieces in_order(std::span<const FoundFile> files, std::vector<std::size_t> pieces,
                       std::span<const std::string_view> inputs) {
    const auto number = [&](std::size_t piece) { return files[piece].label.number; };
    std::stable_sort(pieces.begin(), pieces.end(), [&](std::size_t a, std::size_t b) { return number(a) < number(b); });
    MessagePieces out;
    for (auto first = pieces.begin(); first != pieces.end();) {
        const auto last = std::find_if(first, pieces.end(), [&](std::size_t p) { return number(p) != number(*first); });
        PartCopies copies = choose_copies(files, {first, last}, inputs);
        out.pieces.push_back(&files[copies.kept.front()]);
        if (last - first > 1) out.copies.emplace_back(number(*first), std::move(copies));
        first = last;
    }
    return out;
}

/// The missing numbers, as the first of each gap, with the index of the piece after it.
struct Gap {
    std::uint32_t number;
    std::size_t before_piece;
};

std::vector<Gap> gaps_in(const std::vector<const FoundFile*>& pieces, std::uint32_t total) {
    std::vector<Gap> gaps;
    std::uint32_t wanted = 1;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (pieces[i]->label.number > wanted) gaps.push_back({wanted, i});
        wanted = pieces[i]->label.number + 1;
    }
    if (wanted <= total) gaps.push_back({wanted, pieces.size()});
    return gaps;
}

/// The pieces of a message as one text.
struct JoinedMessage {
    std::vector<Segment> segments;
    std::map<std::pair<std::uint32_t, std::uint64_t>, std::size_t> piece_at;  ///< by source and offset of its beginning

    std::size_t piece_of(const Range& range) const {
        return std::prev(piece_at.upper_bound({range.source, range.begin}))->second;
    }
};

JoinedMessage join(const std::vector<const FoundFile*>& pieces, std::span<const std::string_view> inputs) {
    JoinedMessage out;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        for (const Range& range : pieces[i]->attachment.body) {
            out.segments.push_back({inputs[range.source], range});
            out.piece_at.emplace(std::pair(range.source, range.begin), i);
        }
    }
    return out;
}

/// Returns true if the file may have begun in a missing first piece: nothing in the text begins it.
bool has_lost_head(const FoundFile& file) {
    return !file.has_begin || (file.attachment.name.empty() && file.attachment.content_type.empty());
}

/// Reports which of the missing pieces contained something of a file.
void report_gaps(FoundFile& file, const JoinedMessage& message, const std::vector<Gap>& gaps, std::size_t pieces,
                 std::uint32_t total) {
    Attachment& attachment = file.attachment;
    if (attachment.body.empty()) return;
    const std::size_t first = message.piece_of(attachment.body.front());
    const std::size_t last = message.piece_of(attachment.body.back());
    const auto from = std::upper_bound(gaps.begin(), gaps.end(), first,
                                       [](std::size_t piece, const Gap& gap) { return piece < gap.before_piece; });
    if (first == 0 && !gaps.empty() && gaps.front().before_piece == 0 && has_lost_head(file)) {
        add_missing(attachment, gaps.front().number, total, begin_of(file));
    }
    for (auto gap = from; gap != gaps.end() && attachment.problems.size() < most_missing_reported; ++gap) {
        const bool reaches_end = attachment.body.back().end == message.segments.back().range.end;
        const bool behind = gap->before_piece == pieces && last + 1 == pieces && reaches_end;
        if (gap->before_piece > last && !behind) break;
        add_missing(attachment, gap->number, total, begin_of(file));
    }
}

/// Reports a file that reaches the end of a message whose pieces don't say how many there are.
void report_unknown_total(FoundFile& file, const JoinedMessage& message) {
    Attachment& attachment = file.attachment;
    if (attachment.body.empty() || attachment.body.back().end != message.segments.back().range.end) return;
    report(attachment, ProblemKind::unnumbered_parts, end_of(file),
           "Nothing says how many parts there are; the last may be missing");
}

/// Sets the inputs of problems found while scanning a joined message: only their offsets show where they are.
void name_sources(Attachment& attachment) {
    for (Problem& problem : attachment.problems) {
        const auto holds = [&](const Range& r) { return r.begin <= problem.at_input && problem.at_input <= r.end; };
        const auto range = std::find_if(attachment.body.begin(), attachment.body.end(), holds);
        if (range == attachment.body.end() || problem.source) continue;
        if (std::none_of(range + 1, attachment.body.end(), holds)) problem.source = range->source;
    }
}

std::vector<FoundFile> scan_message(const MessagePieces& parts, std::span<const FoundFile> files,
                                    std::span<const std::string_view> inputs) {
    const std::vector<const FoundFile*>& pieces = parts.pieces;
    std::uint32_t total = 0;
    for (const FoundFile* piece : pieces) total = std::max(total, piece->label.total);
    const std::vector<Gap> gaps = gaps_in(pieces, total);
    const JoinedMessage message = join(pieces, inputs);
    LineCursor cursor(message.segments);
    Found found = scan(cursor);
    for (FoundFile& file : found.files) {
        name_sources(file.attachment);
        report_gaps(file, message, gaps, pieces.size(), total);
        if (total == 0) report_unknown_total(file, message);
        for (const auto& [number, copies] : parts.copies) {
            report_copies(file.attachment, copies, number, begin_of(file).offset);
            note_copies(file.attachment, copies.left_out, files);
        }
    }
    return std::move(found.files);
}

}  // namespace

std::vector<FoundFile> join_messages(std::vector<FoundFile> files, std::span<const std::string_view> inputs) {
    std::map<std::string_view, std::vector<std::size_t>> messages;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!files[i].partial_id.empty()) messages[files[i].partial_id].push_back(i);
    }
    if (messages.empty()) return files;
    std::vector<FoundFile> out;
    for (FoundFile& file : files) {
        if (file.partial_id.empty()) {
            out.push_back(std::move(file));
            continue;
        }
        const auto message = messages.find(file.partial_id);
        if (message == messages.end() || message->second.empty()) continue;
        std::vector<FoundFile> held = scan_message(in_order(files, std::move(message->second), inputs), files, inputs);
        message->second.clear();
        for (FoundFile& inner : held) inner.partial_id.clear();
        std::move(held.begin(), held.end(), std::back_inserter(out));
    }
    return out;
}

}  // namespace quill::codec
