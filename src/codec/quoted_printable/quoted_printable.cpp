#include "codec/quoted_printable/quoted_printable.h"

#include "codec/hex.h"
#include "codec/recovery/decode_run.h"

namespace quill::codec {
namespace quoted_printable {

std::string_view row_of(std::string_view line) {
    return line.substr(0, line.find_last_not_of(" \t\r\n") + 1);
}

void Rows::take(std::string_view line) {
    const std::string_view row = row_of(line);
    ++rows_;
    empty_after_break_ = empty_after_break_ || (skipped_ && !row.empty());
    skipped_ = open_ && row.empty();
    open_ = row.ends_with('=') || skipped_;
    line_end_ = line.ends_with('\n') || line.ends_with('\r');
    soft_breaks_ = soft_breaks_ || (open_ && row.size() <= longest_row);
    too_long_ = too_long_ || row.size() > longest_row;
}

Doubt decode_line(std::string_view line, std::string& out) {
    const std::size_t end = line.find_last_not_of("\r\n") + 1;
    const std::string_view text = row_of(line);
    Doubt doubt = text.find('\0') == text.npos ? Doubt::none : Doubt::bad_character;
    std::size_t at = 0;
    while (true) {
        const std::size_t equals = text.find('=', at);
        out += text.substr(at, equals - at);
        if (equals == std::string_view::npos) break;
        if (equals + 1 == text.size()) return doubt;
        const std::optional<unsigned char> byte = hex_byte(text.substr(equals + 1));
        out.push_back(byte ? static_cast<char>(*byte) : '=');
        if (!byte) doubt = Doubt::bad_escape;
        at = equals + (byte ? 3 : 1);
    }
    out += line.substr(end);
    return doubt;
}

}  // namespace quoted_printable

namespace {

/// Returns the next line; of an extremely long one a piece, cut neither at blanks nor in an escape.
std::string_view next_line(Body& body) {
    const std::string_view line = body.line(piece_size);
    if (line.size() < piece_size) return line;
    std::size_t end = line.size();
    if (const std::size_t escape = line.substr(end - 2).find('='); escape != std::string_view::npos) end += escape - 2;
    end = line.substr(0, end).find_last_not_of(" \t=") + 1;
    return end == 0 ? line : line.substr(0, end);
}

}  // namespace

void decode_quoted_printable(const Attachment& attachment, Body& body, Sink& sink) {
    std::string out;
    quoted_printable::Rows rows;
    while (!body.at_end() && !body.stopped() && !sink.stopped()) {
        const std::string_view line = next_line(body);
        const std::uint64_t at = body.at();
        const quoted_printable::Doubt doubt = quoted_printable::decode_line(line, out);
        rows.take(line);
        if (out.size() >= piece_size || doubt != quoted_printable::Doubt::none) {
            sink.put(out);
            out.clear();
        }
        if (doubt == quoted_printable::Doubt::bad_escape) {
            sink.report(ProblemKind::bad_escape, at);
        } else if (doubt == quoted_printable::Doubt::bad_character) {
            sink.report(ProblemKind::bad_character, at);
        }
        body.pass(line.size());
    }
    sink.put(out);
    sink.note_law(rows.count());
    if (rows.uneven()) sink.report(ProblemKind::uneven_lines, body.at());
    if (rows.goes_on(!attachment.before_boundary)) sink.report(ProblemKind::cut_off, body.at());
}

}  // namespace quill::codec
