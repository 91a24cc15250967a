#include "codec/recovery/decode_run.h"
#include "codec/uu/uu.h"
#include "codec/uu/uu_law.h"
#include "codec/uu/uu_line.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

constexpr std::size_t longest_text = 256;  // characters; a line of data has 85 and some more
constexpr std::size_t most_bytes = 63;
constexpr std::size_t most_blank = 8;  // characters of an empty line, in data that writes zeros as blanks
constexpr std::size_t few_blanks = 2;  // the most at the end of non-zero bytes that can be chance

std::string_view without_line_end(std::string_view line) {
    return line.substr(0, line.find_last_not_of("\r\n") + 1);
}

bool is_blank(std::string_view line) {
    return line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string_view unquoted(std::string_view line, std::size_t quote) {
    return line.substr(std::min(quote, line.size()));
}

/// Returns how many lines of data, which have their stated length, begin with the same length character and have the
/// same line end as the first, so that each is `stride` bytes.
std::uint64_t count_alike(std::string_view lines, std::size_t stride) {
    const char* line = lines.data();
    std::uint64_t count = 0;
    for (const std::uint64_t most = lines.size() / stride; count < most; ++count, line += stride) {
        if (line[0] != lines.front() || line[stride - 1] != '\n') break;
    }
    return count;
}

/// Returns true if all characters after the first `expected` ones are zeros, as in a last row that is padded to the
/// length of the others.
bool is_filled_up(std::string_view row, std::size_t expected, uu::Alphabet alphabet) {
    const std::string_view rest = row.substr(std::min(row.size(), 1 + expected));
    const auto is_zero = [alphabet](char c) { return c == '\t' || c == ' ' || uu::value_of(alphabet, c) == 0; };
    return !rest.empty() && std::all_of(rest.begin(), rest.end(), is_zero);
}

class UuRun {
  public:
    UuRun(const Attachment& attachment, Body& body, Sink& sink)
        : alphabet_(attachment.format == Format::xx ? uu::Alphabet::xx : uu::Alphabet::uu),
          body_(body),
          sink_(sink),
          room_(uu::decoded_bound(body.piece())),
          law_(alphabet_) {
        if (attachment.keeps_blanks) law_.keep_blanks();
    }

    void run();

  private:
    void read_lines();
    void look_at_rows(std::string_view lines);
    void report_uneven(std::uint64_t at);
    std::string take_line();
    void take_odd_line();
    void take_off_dot(std::string& line, std::uint64_t at);
    std::size_t bytes_of(const uu::DataLine& data, std::string_view line, std::uint64_t at);
    bool lost_blanks(const uu::DataLine& data, std::string_view line);
    bool is_data(const uu::DataLine& data, std::string_view line);
    bool zeros_follow();
    bool is_last_line();
    void decode(std::string_view characters, std::size_t bytes);

    uu::Alphabet alphabet_;
    Body& body_;
    Sink& sink_;
    std::vector<char> room_;
    uu::Law law_;
    std::optional<std::uint64_t> long_blank_;  ///< a row of blanks that is too long for an empty line
    bool reported_uneven_ = false;
    std::size_t part_ = 0;
};

void UuRun::run() {
    while (!body_.at_end() && !body_.stopped() && !sink_.stopped()) read_lines();
    if (body_.stopped() || sink_.stopped()) return;
    if (const auto at = law_.wrong_check()) sink_.report(ProblemKind::bad_check, *at);
    if (const auto at = law_.wrongly_stripped()) sink_.report(ProblemKind::short_line, *at);
    if (long_blank_ && law_.writes_blanks()) sink_.report(ProblemKind::bad_length, *long_blank_);
    if (const auto at = law_.mixed_zeros()) sink_.report(ProblemKind::bad_character, *at);
}

void UuRun::read_lines() {
    if (body_.part() != part_) law_.begin_part();
    part_ = body_.part();
    if (body_.quote() > 0) {
        take_odd_line();
        return;
    }
    const std::string_view in = body_.ahead(body_.piece());
    const uu::Progress done = uu::decode_lines(alphabet_, in, room_.data());
    sink_.put({room_.data(), done.written});
    if (done.read == 0) {
        take_odd_line();
        return;
    }
    look_at_rows(in.substr(0, done.read));
    body_.pass(done.read);
}

/// Checks lines that were decoded at once.
void UuRun::look_at_rows(std::string_view lines) {
    law_.take_zeros(lines, body_.at());
    for (std::size_t at = 0; at < lines.size();) {
        const auto bytes = static_cast<std::size_t>(uu::value_of(alphabet_, lines[at]));
        const std::size_t size = 1 + uu::characters_for(bytes);
        const std::size_t stride = size + (lines[at + size] == '\r' ? 2U : 1U);
        if (law_.are_settled(bytes)) {
            const std::uint64_t alike = count_alike(lines.substr(at), stride);
            law_.take_more(alike, body_.at() + at);
            at += alike * stride;
        } else {
            law_.take_exact(lines.substr(at, size), bytes, body_.at() + at);
            report_uneven(body_.at() + at);
            at += stride;
        }
    }
}

void UuRun::report_uneven(std::uint64_t at) {
    if (!law_.uneven() || reported_uneven_) return;
    reported_uneven_ = true;
    sink_.report(ProblemKind::uneven_lines, at);
}

/// Returns the next line without its line end and a quotation's mark; joins one that an input's end cuts in two.
std::string UuRun::take_line() {
    std::string line;
    const std::size_t quote = body_.quote();
    do {
        const std::string_view read = body_.line(piece_size);
        line += read.substr(0, longest_text);
        body_.pass(read.size());
        if (read.ends_with('\n') || read.ends_with('\r')) break;
    } while (!body_.at_end() && line.size() < longest_text);
    return std::string(unquoted(without_line_end(line), quote));
}

/// Returns true if only the end of the data follows.
bool UuRun::is_last_line() {
    const std::string_view rest = unquoted(body_.ahead(longest_text), body_.quote());
    return is_blank(rest) || (!rest.empty() && uu::value_of(alphabet_, rest.front()) == 0);
}

/// Returns true if the next line begins with a zero, or has lost all its blanks.
bool UuRun::zeros_follow() {
    const std::string_view line = without_line_end(unquoted(body_.line(longest_text), body_.quote()));
    return line.size() == 1 || (line.size() > 1 && line[1] == ' ');
}

/// Returns true if the missing characters of the line can be blanks at its end: as few as chance explains, or so many
/// because the line is all zeros, or zeros continue in the next line or end the file.
bool UuRun::lost_blanks(const uu::DataLine& data, std::string_view line) {
    const std::size_t have = line.size() - 1;
    const std::size_t holding_data = (data.bytes * 4 + 2) / 3;
    if (law_.keeps_blanks() || data.fit != uu::Fit::stripped || have > holding_data) return false;
    if (have == 0 || holding_data - have <= few_blanks || zeros_follow()) return true;
    return is_last_line() && 2 * have >= data.expected;
}

/// Returns true if the line must be decoded. One that is much too short has lost blanks, or is damaged but still data
/// if its length character is the one that the lines around it require.
bool UuRun::is_data(const uu::DataLine& data, std::string_view line) {
    const bool far_too_short = data.fit == uu::Fit::stripped && 2 * line.size() < data.expected;
    if (uu::value_of(alphabet_, line.front()) < 0) return false;
    if (data.fit != uu::Fit::none && !far_too_short) return true;
    if (!data.clean) return false;
    return !far_too_short || lost_blanks(data, line) ||
           (!law_.keeps_blanks() && law_.allow(data.bytes, is_last_line()));
}

/// Returns the assumed number of bytes in the line.
std::size_t UuRun::bytes_of(const uu::DataLine& data, std::string_view line, std::uint64_t at) {
    const std::size_t have = line.size() - 1;
    switch (data.fit) {
        case uu::Fit::exact:
        case uu::Fit::unpadded:
            law_.take_exact(line, data.bytes, at, data.blanks_after);
            return data.bytes;
        case uu::Fit::extra:
            law_.take_longer(line, data, at);
            return data.bytes;
        case uu::Fit::stripped:
            law_.take_exact(line, data.bytes, at);
            if (lost_blanks(data, line)) {
                law_.take_stripped(at);
                sink_.report(ProblemKind::lost_blanks, at);
            } else {
                sink_.report(ProblemKind::short_line, at);
            }
            return data.bytes;
        case uu::Fit::none:
            break;
    }
    if (data.bytes > 0 && is_filled_up(line, data.expected, alphabet_) && is_last_line()) {
        sink_.report(ProblemKind::long_line, at);
        return data.bytes;
    }
    sink_.report(ProblemKind::bad_length, at);
    const std::size_t full = uu::characters_for(uu::full_line);
    return have >= full && have <= full + 1 ? uu::full_line : std::min(most_bytes, have / 4 * 3);
}

void UuRun::decode(std::string_view characters, std::size_t bytes) {
    std::array<char, most_bytes + 3> out = {};
    for (std::size_t group = 0; group * 3 < bytes; ++group) {
        std::uint32_t bits = 0;
        for (std::size_t i = group * 4; i < group * 4 + 4; ++i) {
            const int value = i < characters.size() ? uu::value_of(alphabet_, characters[i]) : 0;
            bits = bits << 6U | static_cast<std::uint32_t>(std::max(value, 0));
        }
        for (std::size_t i = 0; i < 3; ++i) out[group * 3 + i] = static_cast<char>(bits >> (16 - 8 * i) & 0xFFU);
    }
    sink_.put({out.data(), bytes});
}

/// Removes the dot that mail and news put before a line that begins with one (RFC 5321 4.5.2), if the line then has its
/// stated length.
void UuRun::take_off_dot(std::string& line, std::uint64_t at) {
    if (!line.starts_with("..") || law_.has_checks()) return;
    const std::string rest = line.substr(1);
    const uu::DataLine data = uu::judge(alphabet_, rest);
    if (!data.clean || data.fit != uu::Fit::exact) return;
    sink_.report(ProblemKind::dots_added, at);
    line = rest;
}

/// Reads a line of a form that encoders do not write.
void UuRun::take_odd_line() {
    const std::uint64_t at = body_.at();
    std::string line = take_line();
    if (is_blank(line)) {
        if (line.size() > most_blank && !long_blank_) long_blank_ = at;
        return;
    }
    take_off_dot(line, at);
    const uu::DataLine data = uu::judge(alphabet_, line);
    if (data.fit != uu::Fit::none && data.bytes == 0) return;
    if (!is_data(data, line)) {
        sink_.report(ProblemKind::foreign_line, at);
        return;
    }
    if (!data.clean) {
        sink_.report(ProblemKind::bad_character, at);
    }
    if (data.clean) law_.take_zeros(line, at);
    decode(std::string_view(line).substr(1), bytes_of(data, line, at));
    report_uneven(at);
}

}  // namespace

void decode_uu(const Attachment& attachment, Body& body, Sink& sink) {
    UuRun(attachment, body, sink).run();
}

}  // namespace quill::codec
