#include "codec/recovery/find.h"

#include "codec/mail/nested_message.h"
#include "codec/recovery/decode.h"
#include "codec/scan/scanner.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace quill::codec {
namespace {

constexpr Wrapping encoded_message = {ProblemKind::encoded_message, ProblemKind::encoded_message, {}, {}};

/// An encoded message with its decoded text.
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
    Found found = scan(cursor, texts_, most_files - std::min(found_.files.size(), most_files));
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

void FindRun::add_files(Found found, unsigned depth) {
    const auto is_encoded = [](const FoundFile& file) { return is_encoded_message(file.attachment); };
    if (found_.files.empty() && std::none_of(found.files.begin(), found.files.end(), is_encoded)) {
        found_.files = std::move(found.files);
        return;
    }
    for (FoundFile& file : found.files) {
        if (stopped_) return;
        std::optional<Opened> opened;
        const bool encoded = is_encoded(file);
        if (encoded && depth < deepest_encoded) opened = open(file.attachment);
        if (encoded && !opened && !file.attachment.body.empty()) {
            const Range& body = file.attachment.body.front();
            add_problems({{ProblemKind::unopened_message, body.begin}}, body.source);
        }
        const bool unwanted = encoded && texts_ == Texts::left_out && file.attachment.message_text;
        if (!unwanted) found_.files.push_back(std::move(file));
        if (opened && opened->source) add_opened(*opened, depth + 1);
    }
}

Result<Found> FindRun::run(std::uint32_t source) {
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
