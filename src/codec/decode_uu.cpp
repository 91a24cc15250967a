#include "codec/decode_run.h"
#include "codec/uu.h"
#include "codec/uu_line.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

constexpr std::size_t longest_text = 256;  // characters; a line of data has 85 and some more
constexpr std::size_t most_bytes = 63;

std::string_view without_line_end(std::string_view line) {
    return line.substr(0, line.find_last_not_of("\r\n") + 1);
}

bool is_blank(std::string_view line) {
    return line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string_view unquoted(std::string_view line, std::size_t quote) {
    return line.substr(std::min(quote, line.size()));
}

class UuRun {
  public:
    UuRun(const Attachment& attachment, Body& body, Sink& sink)
        : alphabet_(attachment.format == Format::xx ? uu::Alphabet::xx : uu::Alphabet::uu),
          body_(body),
          sink_(sink),
          room_(uu::decoded_bound(body.piece())) {}

    void run();

  private:
    std::string take_line();
    void take_odd_line();
    std::size_t bytes_of(const uu::DataLine& data, std::string_view line, std::uint64_t at);
    bool is_last_line();
    void decode(std::string_view characters, std::size_t bytes);

    uu::Alphabet alphabet_;
    Body& body_;
    Sink& sink_;
    std::vector<char> room_;
    bool writes_graves_ = false;  ///< zeros are written '`', so a missing character at a line's end is no lost blank
};

void UuRun::run() {
    while (!body_.at_end() && !body_.stopped() && !sink_.stopped()) {
        if (body_.quote() > 0) {
            take_odd_line();
            continue;
        }
        const std::string_view in = body_.ahead(body_.piece());
        const uu::Progress done = uu::decode_lines(alphabet_, in, room_.data());
        sink_.put({room_.data(), done.written});
        if (done.read > 0) {
            writes_graves_ =
                writes_graves_ || in.substr(0, std::min<std::size_t>(done.read, 4096)).find('`') != in.npos;
            body_.pass(done.read);
        } else {
            take_odd_line();
        }
    }
}

/// The next line without its line end and a quotation's mark; one that an input's end cuts in two is put together.
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

/// Whether nothing but the end of the data follows.
bool UuRun::is_last_line() {
    const std::string_view rest = unquoted(body_.ahead(longest_text), body_.quote());
    return is_blank(rest) || (!rest.empty() && uu::value_of(alphabet_, rest.front()) == 0);
}

/// How many bytes the line is taken to hold.
std::size_t UuRun::bytes_of(const uu::DataLine& data, std::string_view line, std::uint64_t at) {
    const std::size_t have = line.size() - 1;
    switch (data.fit) {
        case uu::Fit::exact:
        case uu::Fit::unpadded:
            return data.bytes;
        case uu::Fit::extra:
            return data.bytes;
        case uu::Fit::stripped:
            if (writes_graves_) {
                sink_.report(Grade::damaged, "short-line", at, "A line is shorter than its length character says");
            } else {
                sink_.report(Grade::repaired, "lost-blanks", at, "Blanks at the end of a line were lost, and put back");
            }
            return data.bytes;
        case uu::Fit::none:
            break;
    }
    if (have > data.expected && is_last_line()) {
        sink_.report(Grade::repaired, "long-line", at, "The last line holds more characters than its length needs");
        return data.bytes;
    }
    sink_.report(Grade::damaged, "bad-length", at, "A line's length and its length character do not agree");
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

/// Reads a line that is not as encoders write it.
void UuRun::take_odd_line() {
    const std::uint64_t at = body_.at();
    const std::string line = take_line();
    if (is_blank(line)) return;
    const uu::DataLine data = uu::judge(alphabet_, line);
    if (data.fit != uu::Fit::none && data.bytes == 0) return;
    const bool far_too_short = data.fit == uu::Fit::stripped && 2 * line.size() < data.expected;
    const bool odd_length = data.fit == uu::Fit::none || far_too_short;
    if (uu::value_of(alphabet_, line.front()) < 0 || (odd_length && !data.clean)) {
        sink_.report(Grade::damaged, "foreign-line", at, "A line among the data is none; it is left out");
        return;
    }
    if (!data.clean) {
        sink_.report(Grade::damaged, "bad-character", at, "A line holds characters that are not of the alphabet");
    }
    writes_graves_ = writes_graves_ || (data.clean && line.find('`') != line.npos);
    decode(std::string_view(line).substr(1), bytes_of(data, line, at));
}

}  // namespace

void decode_uu(const Attachment& attachment, Body& body, Sink& sink) {
    UuRun(attachment, body, sink).run();
}

}  // namespace quill::codec
