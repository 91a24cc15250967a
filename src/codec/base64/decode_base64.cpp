#include "codec/base64/base64_lines.h"
#include "codec/base64/base64_rows.h"
#include "codec/base64/sixbit.h"
#include "codec/input/lines.h"
#include "codec/input/tagged_lines.h"
#include "codec/recovery/decode_run.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace quill::codec {
namespace {

constexpr std::size_t longest_examined = 1024;  // searched backwards for a line's beginning
constexpr std::size_t line_room = sixbit::decoded_bound(2 * longest_examined);
constexpr unsigned most_examined = 10'000;    // lines; beyond that foreign characters are skipped unreported
constexpr unsigned most_tags = 10'000;        // runs of them; beyond that pieces end anywhere
constexpr std::size_t shortest_resumed = 20;  // characters of a line that counts as data after padding
constexpr std::size_t shortest_doubtful = 8;  // characters of a row after padding that may be data
constexpr std::size_t shortest_sure = 40;     // characters of a row that counts as data after text

bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// The composition of a line with foreign characters.
struct LineMake {
    std::size_t data = 0;  ///< characters of the alphabet
    std::size_t foreign = 0;
    bool words = false;  ///< there are blanks between characters
};

LineMake examine(std::string_view line) {
    LineMake out;
    line = text::trim(line);
    while (line.ends_with('\n') || line.ends_with('\r') || line.ends_with('=')) line.remove_suffix(1);
    for (const char c : line) {
        if (is_blank(c)) {
            out.words = true;
        } else {
            (is_base64_line({&c, 1}) ? out.data : out.foreign)++;
        }
    }
    return out;
}

/// Returns true if its rows were found between tags.
bool is_tagged(const Attachment& attachment) {
    return std::any_of(attachment.problems.begin(), attachment.problems.end(),
                       [](const Problem& problem) { return problem.kind == ProblemKind::tagged_lines; });
}

/// Returns the text after its first row and the tags and line ends after that.
std::string_view behind_row(std::string_view text) {
    const std::string_view row = first_row(text);
    std::size_t at = row.empty() ? 0 : static_cast<std::size_t>(row.data() - text.data()) + row.size();
    std::size_t tags = 0;
    at += pass_tags(text.substr(at), tags);
    return text.substr(at);
}

/// Returns the beginning of a row of certain Base64 in `text` that has at least `shortest` characters.
std::optional<std::size_t> find_data(std::string_view text, std::size_t shortest) {
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view row = first_row(text.substr(at, longest_examined));
        if (row.size() >= shortest && is_base64_line(row)) return at;
        at += row.empty() ? 0 : static_cast<std::size_t>(row.data() - text.data()) - at + row.size();
        std::size_t tags = 0;
        const std::size_t gap = pass_tags(text.substr(at), tags);
        if (gap == 0 && row.empty()) break;
        at += gap;
    }
    return std::nullopt;
}

/// Returns true if blanks divide the row into words, the first of which is too short for data with an added blank.
bool is_words(std::string_view row) {
    const std::size_t blank = row.find_first_of(" \t");
    return blank != std::string_view::npos && blank < shortest_resumed && !row.ends_with('=');
}

class Base64Run {
  public:
    Base64Run(const Attachment& attachment, Body& body, Sink& sink)
        : attachment_(attachment), body_(body), sink_(sink), room_(sixbit::decoded_bound(body.piece()) + line_room) {}

    void run();

  private:
    std::string_view next_piece();
    void take_padding();
    void judge_padding();
    bool goes_on();
    void take_tags();
    bool skip_text_between();
    bool data_ahead(std::size_t shortest = shortest_sure);
    void enter_row(std::uint64_t end_before);
    void judge_row(std::size_t ends);
    std::size_t pass_gap();
    void take_foreign(std::size_t written);
    std::size_t take_back_line(std::string_view line_so_far, std::size_t written);
    void take_damaged_line(std::string_view line, const LineMake& make);
    void end();
    void decode(std::string_view in);

    const Attachment& attachment_;
    Body& body_;
    Sink& sink_;
    std::vector<char> room_;
    sixbit::State state_;
    Base64Rows rows_;
    std::size_t part_ = 0;
    unsigned examined_ = 0;
    bool padded_ = false;
    bool in_rows_ = is_tagged(attachment_);
    unsigned tag_runs_ = 0;
    std::uint64_t row_begin_ = 0;  // after the last tags
    std::uint64_t data_at_ = 0;    // of the next row found ahead
    std::size_t longest_row_ = 0;  // characters of the longest row before a tag
    std::size_t usual_gap_ = 1;    // row ends between two rows
    bool uneven_ = false;          // longer rows followed shorter ones
    bool doubted_ = false;
    bool text_behind_ = false;
};

/// Returns whole lines if possible, so that a line that turns out not to be data can be taken back.
std::string_view Base64Run::next_piece() {
    const std::string_view in = body_.ahead(body_.piece());
    if (body_.reach_end(in) || examined_ > most_examined || tag_runs_ > most_tags) return in;
    const std::size_t tail = in.size() - std::min(in.size(), longest_examined);
    const std::size_t end = in.substr(tail).find_last_of("\r\n");
    return end == std::string_view::npos ? in : in.substr(0, tail + end + 1);
}

void Base64Run::run() {
    while (!text_behind_ && !body_.stopped() && !sink_.stopped()) {
        const std::string_view in = next_piece();
        if (in.empty()) break;
        const std::uint32_t pending = state_.pending;
        const sixbit::Progress done = sixbit::decode(sixbit::Alphabet::base64, in, room_.data(), state_);
        if (body_.part() != part_) rows_.begin_part();
        part_ = body_.part();
        rows_.take(in.substr(0, done.read), done.written / 3 * 4 + state_.pending - pending);
        if (done.read > 0 && done.written + state_.pending > 0) padded_ = padded_ && done.written + state_.pending == 0;
        if (done.read == in.size() || in[done.read] == '=') {
            sink_.put({room_.data(), done.written});
            const std::uint64_t end = body_.at() + done.read;
            body_.pass(done.read);
            if (done.read < in.size()) {
                take_padding();
            } else if (in_rows_) {
                longest_row_ = std::max(longest_row_, in.size());
                enter_row(end);
            }
        } else {
            body_.pass(done.read);
            rows_.begin_part();
            if (text::equal_ignoring_case(body_.ahead(line_tag.size()), line_tag)) {
                sink_.put({room_.data(), done.written});
                take_tags();
            } else {
                take_foreign(done.written);
            }
        }
    }
    if (!body_.stopped() && !sink_.stopped()) end();
}

/// Skips tags, blanks and line ends. Returns the number of tags.
std::size_t Base64Run::pass_gap() {
    std::size_t tags = 0;
    while (!body_.at_end() && !body_.stopped()) {
        const std::size_t n = pass_tags(body_.ahead(body_.piece()), tags);
        if (n == 0) break;
        body_.pass(n);
    }
    return tags;
}

/// Skips "<BR>", which replaces a line end in text copied from a page, and any further ones.
void Base64Run::take_tags() {
    if (tag_runs_++ == 0) sink_.report(ProblemKind::tagged_lines, body_.at());
    const std::size_t held = std::min<std::uint64_t>(longest_examined, body_.at() - std::min(row_begin_, body_.at()));
    std::string_view before = body_.behind(held);
    while (before.ends_with(' ') || before.ends_with('\t')) before.remove_suffix(1);
    std::size_t ends = before.ends_with('\n') || before.ends_with('\r') ? 1 : 0;
    while (!before.empty() && is_blank(before.back())) before.remove_suffix(1);
    before.remove_prefix(before.find_last_of("\r\n") + 1);
    longest_row_ = std::max(longest_row_, before.size());
    ends += pass_gap();
    row_begin_ = body_.at();
    if (!body_.at_end() && !body_.stopped()) judge_row(ends);
}

/// Moves to the next row, if the scan found the rows between the tags.
void Base64Run::enter_row(std::uint64_t end_before) {
    if (body_.at_end() || body_.stopped() || body_.at() <= end_before) return;
    const auto ends = static_cast<std::size_t>((body_.at() - end_before) / line_tag.size());
    if (body_.at() == attachment_.body.back().begin) {
        judge_row(ends);
    } else {
        usual_gap_ = std::max(usual_gap_, ends);
    }
}

/// Returns true if data follows the text at the current place.
bool Base64Run::data_ahead(std::size_t shortest) {
    if (body_.at() < data_at_) return true;
    const auto found = find_data(body_.ahead(body_.piece()), shortest);
    if (found) data_at_ = body_.at() + *found;
    return found.has_value();
}

/// Reports a row after tags that is or may be other text.
void Base64Run::judge_row(std::size_t ends) {
    const std::string_view text = body_.ahead(2 * longest_examined);
    const std::string_view row = first_row(text);
    const std::string_view behind = behind_row(text);
    const bool between = body_.at() < data_at_ && row.size() < shortest_sure;  // text before more data
    if (between || is_words(row)) {
        if (++examined_ <= most_examined && !data_ahead()) {
            text_behind_ = true;
            sink_.report(ProblemKind::text_after_data, body_.at());
        } else {
            sink_.report(ProblemKind::foreign_line, body_.at());
            body_.pass(row.size());
        }
        return;
    }
    if (row.size() >= longest_row_) {
        usual_gap_ = std::max(usual_gap_, ends);
        return;
    }
    if (doubted_ || row.ends_with('=') || !is_base64_line(row)) return;
    const std::string_view next = first_row(behind);
    const bool more = is_base64_line(next);
    if (more && next.size() >= longest_row_) uneven_ = true;
    if (more && (uneven_ || next.ends_with('='))) return;
    doubted_ = more || ends > usual_gap_ || (state_.pending + row.size()) % 4 != 0;
    if (doubted_) {
        sink_.report(ProblemKind::doubtful_row, body_.at());
    }
}

/// Reports '=' at the current place that are fewer than the last group needs, or more. On a line of their own they only
/// mark the end.
void Base64Run::judge_padding() {
    const std::uint64_t at = body_.at();
    if (state_.pending == 1) {
        sink_.report(ProblemKind::bad_group, at);
        return;
    }
    const std::string_view before = body_.behind(1);
    const std::string_view ahead = body_.ahead(4);
    const std::size_t count = std::min(ahead.find_first_not_of('='), ahead.size());
    const bool own_line = before.empty() || is_blank(before.front());
    if (state_.pending == 0 && own_line && count > 2) return;
    if (count + state_.pending != 4) {
        sink_.report(ProblemKind::bad_padding, at);
    }
}

/// Reads the '=' at the current place and what follows it.
void Base64Run::take_padding() {
    std::array<char, 2> last = {};
    judge_padding();
    rows_.end_padded();
    sink_.put({last.data(), sixbit::finish(last.data(), state_)});
    padded_ = true;
    while (!body_.at_end() && !body_.stopped()) {
        const std::string_view in = body_.ahead(body_.piece());
        const std::size_t n = std::min(in.find_first_not_of("= \t\r\n"), in.size());
        if (n > 0) body_.pass(n);
        if (n == 0 && pass_gap() == 0) break;
    }
    row_begin_ = body_.at();
    if (body_.at_end()) return;
    if (body_.behind(1) == "=" && is_base64_line(body_.ahead(1))) {
        sink_.report(ProblemKind::inner_padding, body_.at());
    }
    if (goes_on() || skip_text_between()) return;
    text_behind_ = true;
    sink_.report(ProblemKind::text_after_data, body_.at());
}

/// Returns true if more data follows padding: pieces that were encoded one by one.
bool Base64Run::goes_on() {
    const std::string_view line = text::trim(body_.line(longest_examined));
    const std::string_view characters = first_row(line);
    if (!is_base64_line(characters)) return false;
    if (characters.size() >= shortest_resumed) {
        sink_.report(ProblemKind::inner_padding, body_.at());
        return true;
    }
    if (characters.size() < shortest_doubtful || characters.size() % 4 != 0) return false;
    sink_.report(ProblemKind::doubtful_row, body_.at());
    return true;
}

/// Skips a line after padding if full rows follow: that padding is not the end.
bool Base64Run::skip_text_between() {
    if (++examined_ > most_examined || !data_ahead(std::max(shortest_sure, rows_.width()))) return false;
    sink_.report(ProblemKind::foreign_line, body_.at());
    body_.pass(body_.line(longest_examined).size());
    return true;
}

/// Takes back the decoded bytes of a line that turned out not to be data. Returns how much of the output is good.
std::size_t Base64Run::take_back_line(std::string_view line_so_far, std::size_t written) {
    std::size_t characters = 0;
    for (const char c : line_so_far) characters += is_blank(c) ? 0U : 1U;
    const std::size_t before = (state_.pending + 4 - characters % 4) % 4;
    const std::size_t bytes = (before + characters) / 4 * 3;
    if (bytes > written) return written;
    state_ = {};
    const std::string_view earlier = body_.behind(longest_examined + line_so_far.size());
    std::string pending;
    for (std::size_t i = earlier.size() - line_so_far.size(); i-- > 0 && pending.size() < before;) {
        if (!is_blank(earlier[i])) pending.insert(pending.begin(), earlier[i]);
    }
    std::array<char, sixbit::decoded_bound(4)> unused = {};
    sixbit::decode(sixbit::Alphabet::base64, pending, unused.data(), state_);
    return written - bytes;
}

void Base64Run::decode(std::string_view in) {
    sink_.put({room_.data(), sixbit::decode(sixbit::Alphabet::base64, in, room_.data(), state_).written});
}

/// Reads a line with foreign characters in it. `written` bytes decoded before the first of them are pending in the
/// room.
void Base64Run::take_foreign(std::size_t written) {
    const std::uint64_t at = body_.at();
    if (++examined_ > most_examined) {
        sink_.put({room_.data(), written});
        sink_.report(ProblemKind::bad_character, at);
        body_.pass(1);
        return;
    }
    const std::string_view before = body_.behind(longest_examined);
    const std::size_t line_begin = before.find_last_of("\r\n") + 1;  // 0 if there is none
    const std::string_view so_far = before.substr(line_begin);
    const std::string_view rest = body_.line(longest_examined);
    std::string line(so_far);
    line += rest;
    const LineMake make = examine(line);
    const std::size_t good = take_back_line(so_far, written);
    sink_.put({room_.data(), good});
    const bool taken_back = good < written || so_far.empty();
    if (taken_back && (make.foreign * 8 > make.data || (make.words && make.foreign > 0))) {
        sink_.report(ProblemKind::foreign_line, at - so_far.size());
        body_.pass(rest.size());
        return;
    }
    sink_.report(ProblemKind::bad_character, at);
    if (good < written || so_far.empty()) {
        take_damaged_line(line, make);
        body_.pass(rest.size());
    } else {
        body_.pass(1);
    }
}

/// Reads a damaged line. If it has as many characters as whole groups need, the foreign ones replaced good ones; else
/// they were added, and are left out.
void Base64Run::take_damaged_line(std::string_view line, const LineMake& make) {
    const bool replaced = (make.data + make.foreign + state_.pending) % 4 == 0;
    std::string mended;
    for (const char c : line) {
        const bool data = is_blank(c) || is_base64_line({&c, 1});
        if (data) mended.push_back(c);
        if (!data && replaced && c != '=') mended.push_back('A');
    }
    decode(mended);
}

void Base64Run::end() {
    const std::uint64_t at = body_.at();
    const bool whole = state_.pending == 0;
    if (state_.pending == 1) {
        sink_.report(ProblemKind::cut_group, at);
    } else if (!whole && !attachment_.cut_off) {
        sink_.report(ProblemKind::missing_padding, at);
    }
    rows_.end();
    sink_.note_law(rows_.usual_rows());
    if (rows_.uneven() && tag_runs_ == 0 && !in_rows_) {
        sink_.report(ProblemKind::uneven_lines, at);
    }
    std::array<char, 2> last = {};
    sink_.put({last.data(), sixbit::finish(last.data(), state_)});
    if (sink_.size() == 0 && (tag_runs_ > 0 || in_rows_)) {
        sink_.report(ProblemKind::no_data, at);
    }
    if (!attachment_.cut_off) return;
    const bool sure = padded_ || (attachment_.stated_size && *attachment_.stated_size == sink_.size());
    if (sure) {
        sink_.report(ProblemKind::unclosed_part, at);
    } else {
        sink_.report(ProblemKind::missing_boundary, at);
    }
}

}  // namespace

void decode_base64(const Attachment& attachment, Body& body, Sink& sink) {
    Base64Run(attachment, body, sink).run();
}

}  // namespace quill::codec
