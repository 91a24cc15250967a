#include "codec/quoted_printable/quoted_printable.h"

#include "codec/hex.h"
#include "codec/recovery/decode_run.h"

namespace quill::codec {
namespace quoted_printable {

Doubt decode_line(std::string_view line, std::string& out) {
    Doubt doubt = Doubt::none;
    const std::size_t end = line.find_last_not_of("\r\n") + 1;
    const std::string_view text = line.substr(0, line.find_last_not_of(" \t\r\n") + 1);
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

/// The next line; of one beyond all measure a piece, cut where neither blanks nor an escape stand.
std::string_view next_line(Body& body) {
    const std::string_view line = body.line(piece_size);
    if (line.size() < piece_size) return line;
    std::size_t end = line.size();
    if (const std::size_t escape = line.substr(end - 2).find('='); escape != std::string_view::npos) end += escape - 2;
    end = line.substr(0, end).find_last_not_of(" \t=") + 1;
    return end == 0 ? line : line.substr(0, end);
}

}  // namespace

void decode_quoted_printable(Body& body, Sink& sink) {
    std::string out;
    while (!body.at_end() && !body.stopped() && !sink.stopped()) {
        const std::string_view line = next_line(body);
        const std::uint64_t at = body.at();
        const quoted_printable::Doubt doubt = quoted_printable::decode_line(line, out);
        if (out.size() >= piece_size || doubt != quoted_printable::Doubt::none) {
            sink.put(out);
            out.clear();
        }
        if (doubt == quoted_printable::Doubt::bad_escape) {
            sink.report(ProblemKind::bad_escape, at);
        }
        body.pass(line.size());
    }
    sink.put(out);
}

}  // namespace quill::codec
