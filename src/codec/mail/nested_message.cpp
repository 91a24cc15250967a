#include "codec/mail/nested_message.h"

#include "codec/recovery/decode.h"
#include "codec/scan/scanner.h"
#include "files/temporary_file.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quill::codec {
namespace {

using Files = std::list<FoundFile>;

/// An encoded message, and the place in the input of it or of the one around it all.
struct Encoded {
    Files::iterator file;
    std::uint64_t place = 0;
};

/// A message that was decoded, and where its text lies.
struct Opened {
    Encoded message;
    Range text;
    bool damaged = false;
    bool cut_off = false;
};

/// Decodes `messages` to the end of `spool`; false where it takes no more.
bool decode_to(files::TemporaryFile& spool, const std::vector<Encoded>& messages, const files::MappedFile& input,
               std::uint32_t source, std::vector<Opened>& opened) {
    std::vector<std::string_view> inputs(source + std::size_t{1});
    inputs[source] = input.bytes();
    for (const Encoded& message : messages) {
        const std::uint64_t begin = spool.size();
        bool written = true;
        const Outcome outcome = decode(
            message.file->attachment, inputs, [&](std::string_view bytes) { return written = spool.write(bytes).ok(); },
            [&](std::uint32_t, std::uint64_t offset) {
                input.release_before(offset);
                return true;
            });
        if (!written) return false;
        const bool damaged = std::any_of(outcome.problems.begin(), outcome.problems.end(),
                                         [](const Problem& problem) { return grade_of(problem) == Grade::damaged; });
        opened.push_back({message, {begin, spool.size(), source}, damaged, outcome.verdict == Verdict::incomplete});
    }
    return true;
}

/// What a file loses by the state of the encoded message that holds it.
std::vector<Problem> problems_by(const Opened& message, const Attachment& file) {
    std::vector<Problem> out;
    const std::uint64_t at = message.message.place;
    if (message.damaged) {
        out.push_back({ProblemKind::damaged_message, at});
    }
    if (message.cut_off && !file.body.empty() && file.body.back().end == message.text.end) {
        out.push_back({ProblemKind::cut_off_message, at});
    }
    return out;
}

/// Puts what `message` holds after it, and the encoded messages among that into `further`. Problems seen on the way are
/// reported at the message's place in the input, each kind once.
void scan_opened(const Opened& message, const files::MappedFile& input, Texts texts, Files& files,
                 std::vector<Problem>& problems, std::vector<Encoded>& further) {
    LineCursor cursor({{input.bytes(), message.text}});
    Found found = scan(cursor, texts, most_files - std::min(files.size(), most_files));
    const std::uint64_t place = message.message.place;
    for (Problem& problem : found.problems) {
        const auto same = [&](const Problem& earlier) { return earlier.kind == problem.kind; };
        if (std::any_of(problems.begin(), problems.end(), same)) continue;
        problem.at_input = place;
        problems.push_back(std::move(problem));
    }
    if (found.files.empty() && (message.damaged || message.cut_off)) {
        problems.push_back({message.cut_off ? ProblemKind::cut_off_message : ProblemKind::damaged_message,
                            place,
                            {},
                            message.cut_off ? "An encoded message is cut off, and no file was found in it"
                                            : "An encoded message is damaged, and no file was found in it"});
    }
    const auto behind = std::next(message.message.file);
    for (FoundFile& file : found.files) {
        for (Problem& problem : file.attachment.problems) problem.at_input = place;
        std::vector<Problem> more = problems_by(message, file.attachment);
        std::move(more.begin(), more.end(), std::back_inserter(file.attachment.problems));
        const auto added = files.insert(behind, std::move(file));
        if (is_encoded_message(added->attachment)) further.push_back({added, place});
    }
}

}  // namespace

bool is_message_type(std::string_view content_type) {
    return content_type == "message/rfc822" || content_type == "message/news" || content_type == "message/global";
}

bool is_encoded_message(const Attachment& attachment) {
    return (attachment.format == Format::base64 || attachment.format == Format::quoted_printable) &&
           is_message_type(attachment.content_type);
}

void open_encoded_messages(Found& found, files::MappedFile& input, std::uint32_t source, Texts texts) {
    Files files(std::make_move_iterator(found.files.begin()), std::make_move_iterator(found.files.end()));
    std::vector<Encoded> messages;
    for (auto file = files.begin(); file != files.end(); ++file) {
        const std::vector<Range>& body = file->attachment.body;
        if (is_encoded_message(file->attachment)) messages.push_back({file, body.empty() ? 0 : body.front().begin});
    }
    Result<files::TemporaryFile> spool = files::TemporaryFile::create();
    const bool copied = spool.ok() && input.bytes().size() <= largest_copied && spool->write(input.bytes()).ok();
    for (unsigned depth = 0; copied && depth < deepest_encoded && !messages.empty(); ++depth) {
        std::vector<Opened> opened;
        if (!decode_to(*spool, messages, input, source, opened)) break;
        Result<files::MappedFile> longer = files::MappedFile::open(spool->path());
        if (!longer) break;
        input = std::move(*longer);
        messages.clear();
        for (const Opened& message : opened) scan_opened(message, input, texts, files, found.problems, messages);
        input.release_before(input.bytes().size());
    }
    if (!messages.empty()) {
        found.problems.push_back({ProblemKind::unopened_message, messages.front().place});
    }
    const auto unwanted = [&](const FoundFile& file) {
        return texts == Texts::left_out && file.attachment.message_text && is_encoded_message(file.attachment);
    };
    files.remove_if(unwanted);
    found.files.assign(std::make_move_iterator(files.begin()), std::make_move_iterator(files.end()));
}

}  // namespace quill::codec
