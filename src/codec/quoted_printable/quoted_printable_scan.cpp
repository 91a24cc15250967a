#include "codec/hex.h"
#include "codec/scan/text_scan.h"
#include "text/ascii.h"

#include <utility>

namespace quill::codec {
namespace {

constexpr std::size_t longest_encoded_line = 76;  // RFC 2045 6.7, rule 5
constexpr unsigned sampled_lines = 40;
constexpr unsigned escapes_for_evidence = 3;

/// The meaning of the '=' in some lines.
struct Evidence {
    unsigned escapes = 0;
    unsigned soft_breaks = 0;
    unsigned misfits = 0;
};

void weigh(std::string_view line, Evidence& evidence) {
    for (std::size_t at = line.find('='); at != std::string_view::npos; at = line.find('=', at + 1)) {
        const std::string_view behind = line.substr(at + 1);
        if (behind.empty()) {
            ++evidence.soft_breaks;
        } else if (hex_byte(behind)) {
            ++evidence.escapes;
        } else {
            ++evidence.misfits;
        }
    }
}

}  // namespace

bool sniff_bare_quoted_printable(std::string_view line) {
    return line.ends_with('=') && line.size() <= longest_encoded_line && line.size() + 16 > longest_encoded_line;
}

// Opens a text as a whole if it has no header: it begins where the text begins.
bool open_bare_quoted_printable(TextScan& scan, const Line& line) {
    if (scan.in_message || scan.in_armor || !scan.found.files.empty()) return false;
    Evidence evidence;
    Line next = line;
    weigh(line.text, evidence);
    for (unsigned i = 0; i < sampled_lines && peek_text(scan, next.next, 3, next); ++i) weigh(next.text, evidence);
    if (evidence.misfits > 0 || evidence.soft_breaks < 2 || evidence.escapes < escapes_for_evidence) return false;
    FoundFile file;
    file.attachment.format = Format::quoted_printable;
    file.attachment.content_type = "text/plain";
    Line last = line;
    while (scan.cursor.next(next)) {
        if (scan.is_stop(next)) {
            scan.cursor.seek(next.begin);
            break;
        }
        last = next;
    }
    file.attachment.body = scan.cursor.ranges(scan.cursor.first(), last.next);
    scan.add(std::move(file));
    return true;
}

}  // namespace quill::codec
