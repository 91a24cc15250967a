#include "codec/scan/text_scan.h"

#include "codec/mail/nested_message.h"

#include <array>
#include <utility>

namespace quill::codec {
namespace {

constexpr std::array formats = {
    TextFormat{"uuencode, xxencode, begin-base64", sniff_begin, open_begin},
    TextFormat{"uuencode, xxencode, quoted", sniff_quoted_begin, open_quoted_begin},
    TextFormat{"yEnc", sniff_yenc, open_yenc},
    TextFormat{"BinHex 4.0", sniff_binhex, open_binhex},
    TextFormat{"ASCII armor", sniff_armor, open_armor},
    TextFormat{"uuencode, xxencode without a begin line", sniff_bare_uu, open_bare_uu},
    TextFormat{"Base64 without a header", sniff_bare_base64, open_bare_base64},
    TextFormat{"BinHex 4.0, a later part", sniff_bare_binhex, open_bare_binhex},
    TextFormat{"quoted-printable without a header", sniff_bare_quoted_printable, open_bare_quoted_printable},
};

}  // namespace

std::span<const TextFormat> text_formats() {
    return formats;
}

void TextScan::add(FoundFile file, std::uint32_t at_order) {
    const bool opened_later = !file.partial_id.empty() || is_encoded_message(file.attachment);
    if (texts == Texts::left_out && file.attachment.message_text && !opened_later) return;
    if (file.tentative) {
        ++tentative;
    } else if (found.files.size() - tentative >= room) {
        report_full(file.attachment);
        return;
    }
    file.order = at_order;
    found.files.push_back(std::move(file));
}

/// Reports, once, that there is no room for a file.
void TextScan::report_full(const Attachment& attachment) {
    if (std::exchange(full, true)) return;
    const std::uint64_t at = attachment.body.empty() ? 0 : attachment.body.front().begin;
    found.problems.push_back({ProblemKind::too_many_files, at});
}

bool is_blank_line(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

bool peek_text(const TextScan& scan, Position at, unsigned most, Line& line) {
    for (unsigned i = 0; i < most; ++i) {
        if (!scan.cursor.peek(at, peeked_characters, line) || scan.is_stop(line)) return false;
        if (!is_blank_line(line.text)) return true;
        at = line.next;
    }
    return false;
}

// Returns true for the lines that enclose keys, certificates and signed or encrypted texts, in Base64 that is not a
// file.
bool sniff_armor(std::string_view line) {
    return line.starts_with("-----");
}

bool open_armor(TextScan& scan, const Line& line) {
    if (line.text.starts_with("-----BEGIN ")) scan.in_armor = true;
    if (line.text.starts_with("-----END ")) scan.in_armor = false;
    return false;
}

}  // namespace quill::codec
