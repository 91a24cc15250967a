#include "codec/recovery/find.h"

#include "codec/mail/nested_message.h"
#include "codec/recovery/decode.h"
#include "codec/recovery/part_label.h"
#include "codec/scan/scanner.h"
#include "codec/tnef/tnef.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace quill::codec {
namespace {

constexpr Wrapping encoded_message = {ProblemKind::encoded_message, ProblemKind::encoded_message, {}, {}};

/// An encoded message or a TNEF stream, with its decoded text.
struct Opened {
    std::optional<std::uint32_t> source;  ///< its text; absent if empty
    bool damaged = false;
    bool cut_off = false;
};

/// Returns the problems of a file caused by the encoded message that contains it.
std::vector<Problem> problems_by(const Opened& message, std::uint64_t text_end, const Attachment& file) {
    std::vector<Problem> out;
    const std::uint64_t at = file.body.empty() ? 0 : file.body.front().begin;
    if (message.damaged) out.push_back({ProblemKind::damaged_message, at});
    if (message.cut_off && !file.body.empty() && file.body.back().end == text_end) {
        out.push_back({ProblemKind::cut_off_message, at});
    }
    return out;
}

/// Returns true unless `file` may turn out to be a piece of one whose other pieces lie elsewhere.
bool is_all_of_it(const FoundFile& file) {
    return file.has_begin && file.has_end && !file.tentative && file.partial_id.empty() && file.label.number == 0 &&
           file.attachment.format != Format::yenc;
}

/// Sets the text of all problems.
void name_source(Found& found, std::uint32_t source) {
    for (Problem& problem : found.problems) problem.source = source;
    for (FoundFile& file : found.files) {
        for (Problem& problem : file.attachment.problems) problem.source = source;
    }
}

/// One run over a user's file and the encoded messages in it.
class FindRun {
  public:
    FindRun(Sources& sources, Texts texts, const OnScanned& on_scanned)
        : sources_(sources), texts_(texts), on_scanned_(on_scanned) {}

    Result<Found> run(std::uint32_t source);

  private:
    Found scan_text(std::uint32_t source);
    void add_files(Found found, unsigned depth);
    void add_problems(std::vector<Problem> problems, std::uint32_t source);
    std::optional<Opened> open(const Attachment& message);
    void add_opened(const Opened& message, unsigned depth);
    void add_file(FoundFile file, unsigned depth);
    bool is_tnef(const FoundFile& file) const;
    std::optional<Problem> add_tnef(const Opened& stream);
    void add_stream(FoundFile file);
    bool goes_on(std::uint64_t offset);

    Sources& sources_;
    Texts texts_;
    const OnScanned& on_scanned_;
    Found found_;
    bool stopped_ = false;
};

bool FindRun::goes_on(std::uint64_t offset) {
    if (on_scanned_ && !on_scanned_(offset)) stopped_ = true;
    return !stopped_;
}

Found FindRun::scan_text(std::uint32_t source) {
    const files::MappedFile& text = sources_.text(source);
    LineCursor cursor({{text.bytes(), {0, text.bytes().size(), source}}}, [&](const Segment&, std::uint64_t offset) {
        text.release_before(offset);
        return goes_on(static_cast<std::uint64_t>(sources_.file_offset(source, offset)));
    });
    const std::uint32_t part_number = part_of_path(sources_.paths()[sources_.file_of(source)]);
    Found found = scan(cursor, texts_, most_files - std::min(found_.files.size(), most_files), part_number);
    text.release_before(text.bytes().size());
    name_source(found, source);
    return found;
}

/// Decodes `message` into a separate text; absent if there is no room for it.
std::optional<Opened> FindRun::open(const Attachment& message) {
    if (sources_.size() >= most_texts || message.body.empty()) return std::nullopt;
    const Range& first = message.body.front();
    PlainText plain = sources_.begin_plain(first.source);
    const files::MappedFile& around = sources_.text(first.source);
    const Outcome outcome = decode(
        message, sources_.bytes(),
        [&](std::string_view bytes) {
            plain.add(bytes, first.begin);
            return !plain.stopped();
        },
        [&](std::uint32_t, std::uint64_t offset) {
            around.release_before(offset);
            return true;
        });
    std::optional<Unwrapped> text = plain.finish();
    const bool damaged = std::any_of(outcome.problems.begin(), outcome.problems.end(), [](const Problem& problem) {
        return report::grade_of(problem) == Grade::damaged;
    });
    if (plain.stopped() || (!text && outcome.size > 0)) return std::nullopt;
    Opened out{{}, damaged, outcome.verdict == Verdict::incomplete};
    if (text) out.source = sources_.add(std::move(*text), first.source, encoded_message);
    return out;
}

/// Adds problems of a text as a whole, each kind once, with their places in the user's file.
void FindRun::add_problems(std::vector<Problem> problems, std::uint32_t source) {
    for (Problem& problem : problems) {
        const auto same = [&](const Problem& earlier) { return earlier.kind == problem.kind; };
        if (std::any_of(found_.problems.begin(), found_.problems.end(), same)) continue;
        problem.at_input = static_cast<std::uint64_t>(sources_.file_offset(source, problem.at_input));
        problem.source = sources_.file_of(source);
        found_.problems.push_back(std::move(problem));
    }
}

void FindRun::add_opened(const Opened& message, unsigned depth) {
    const std::uint32_t source = sources_.unwrap(*message.source, [this](std::uint64_t) { return !stopped_; });
    Found found = scan_text(source);
    add_problems(std::move(found.problems), source);
    if (found.files.empty() && (message.damaged || message.cut_off)) {
        const auto kind = message.cut_off ? ProblemKind::cut_off_message : ProblemKind::damaged_message;
        const std::string_view state = message.cut_off ? "cut off" : "damaged";
        add_problems({{kind,
                       0,
                       {},
                       std::string("An encoded message is ").append(state).append(", and no file was found in it")}},
                     source);
    }
    const std::uint64_t end = sources_.bytes()[source].size();
    for (FoundFile& file : found.files) {
        std::vector<Problem> more = problems_by(message, end, file.attachment);
        std::move(more.begin(), more.end(), std::back_inserter(file.attachment.problems));
    }
    add_files(std::move(found), depth);
}

bool FindRun::is_tnef(const FoundFile& file) const {
    const Attachment& attachment = file.attachment;
    if (!is_all_of_it(file) || attachment.message_text || attachment.body.empty()) return false;
    const bool found = tnef::has_signature(decode_first_bytes(attachment, sources_.bytes(), tnef::signature_size));
    const Range& first = attachment.body.front();
    sources_.text(first.source).release_before(first.end);
    return found;
}

/// Adds what the stream holds. Returns the reason where not all of it could be added, or none of it is a file.
std::optional<Problem> FindRun::add_tnef(const Opened& stream) {
    const std::string_view bytes = sources_.bytes()[*stream.source];
    const std::uint32_t source = *stream.source;
    tnef::Contents contents =
        tnef::read(bytes, {source, most_files - std::min(found_.files.size(), most_files), [&](std::uint64_t offset) {
                               return goes_on(static_cast<std::uint64_t>(sources_.file_offset(source, offset)));
                           }});
    for (FoundFile& file : contents.files) {
        if (texts_ == Texts::left_out && file.attachment.message_text) continue;
        for (Problem& problem : problems_by(stream, bytes.size(), file.attachment)) {
            file.attachment.problems.push_back(std::move(problem));
        }
        found_.files.push_back(std::move(file));
    }
    sources_.text(source).release_before(bytes.size());
    if (contents.trouble) add_problems({*contents.trouble}, source);
    return contents.trouble;
}

/// Adds the files of a TNEF stream in place of the stream itself, which stays where it holds more than its files.
void FindRun::add_stream(FoundFile file) {
    const std::optional<Opened> stream = open(file.attachment);
    if (!stream || !stream->source) {
        const Range& body = file.attachment.body.front();
        add_problems({{ProblemKind::unopened_message, body.begin}}, body.source);
        found_.files.push_back(std::move(file));
        return;
    }
    const std::size_t before = found_.files.size();
    std::optional<Problem> trouble = add_tnef(*stream);
    const auto begin = found_.files.begin() + static_cast<std::ptrdiff_t>(before);
    const bool has_files =
        std::any_of(begin, found_.files.end(), [](const FoundFile& added) { return !added.attachment.message_text; });
    if (has_files && !trouble) return;
    if (trouble && trouble->kind == ProblemKind::cut_off) file.attachment.problems.push_back(std::move(*trouble));
    found_.files.insert(begin, std::move(file));
}

void FindRun::add_file(FoundFile file, unsigned depth) {
    if (is_tnef(file)) {
        add_stream(std::move(file));
        return;
    }
    std::optional<Opened> opened;
    const bool encoded = is_encoded_message(file.attachment);
    if (encoded && depth < deepest_encoded) opened = open(file.attachment);
    if (encoded && !opened && !file.attachment.body.empty()) {
        const Range& body = file.attachment.body.front();
        add_problems({{ProblemKind::unopened_message, body.begin}}, body.source);
    }
    const bool unwanted = encoded && texts_ == Texts::left_out && file.attachment.message_text;
    if (!unwanted) found_.files.push_back(std::move(file));
    if (opened && opened->source) add_opened(*opened, depth + 1);
}

void FindRun::add_files(Found found, unsigned depth) {
    const auto holds_more = [this](const FoundFile& file) {
        return is_encoded_message(file.attachment) || is_tnef(file);
    };
    if (found_.files.empty() && std::none_of(found.files.begin(), found.files.end(), holds_more)) {
        found_.files = std::move(found.files);
        return;
    }
    for (FoundFile& file : found.files) {
        if (stopped_) return;
        add_file(std::move(file), depth);
    }
}

Result<Found> FindRun::run(std::uint32_t source) {
    if (tnef::has_signature(sources_.bytes()[source])) {
        add_tnef({source});
        if (stopped_) return Error{ErrorCode::cancelled, 0, "Stopped"};
        return std::move(found_);
    }
    const std::uint32_t plain = sources_.unwrap(source, [this](std::uint64_t offset) { return goes_on(offset); });
    Found found = stopped_ ? Found{} : scan_text(plain);
    add_problems(std::move(found.problems), plain);
    add_files(std::move(found), 0);
    if (sources_.out_of_room()) {
        add_problems(
            {{ProblemKind::unopened_message, 0, {}, "There is no room for a copy of the text without its wrappings"}},
            source);
    }
    if (stopped_) return Error{ErrorCode::cancelled, 0, "Stopped"};
    return std::move(found_);
}

}  // namespace

Result<Found> find(Sources& sources, std::uint32_t source, Texts texts, const OnScanned& on_scanned) {
    return FindRun(sources, texts, on_scanned).run(source);
}

}  // namespace quill::codec
