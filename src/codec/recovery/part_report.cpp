#include "codec/recovery/part_report.h"

#include <utility>
#include <vector>

namespace quill::codec {
namespace {

std::string part_text(std::uint32_t number, std::uint32_t total) {
    std::string text = "Part " + std::to_string(number);
    if (total > 0) text += " of " + std::to_string(total);
    return text + " is missing";
}

}  // namespace

Place begin_of(const FoundFile& file) {
    const std::vector<Range>& body = file.attachment.body;
    return body.empty() ? Place{} : Place{body.front().begin, body.front().source};
}

Place end_of(const FoundFile& file) {
    const std::vector<Range>& body = file.attachment.body;
    return body.empty() ? Place{} : Place{body.back().end, body.back().source};
}

void report(Attachment& attachment, ProblemKind kind, const Place& at, std::string text) {
    attachment.problems.push_back({kind, at.offset, {}, std::move(text), at.source});
}

void add_missing(Attachment& attachment, std::uint32_t number, std::uint32_t total, const Place& at) {
    if (attachment.problems.size() >= most_missing_reported) return;
    report(attachment, ProblemKind::missing_part, at, part_text(number, total));
}

void note_copies(Attachment& attachment, std::span<const std::size_t> copies, std::span<const FoundFile> files) {
    for (const std::size_t copy : copies) {
        for (const Range& range : files[copy].attachment.body) attachment.copies_in.push_back(range.source);
    }
}

}  // namespace quill::codec
