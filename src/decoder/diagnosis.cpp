#include "decoder/diagnosis.h"

#include "codec/recovery/file_signature.h"
#include "text/count.h"

#include <algorithm>
#include <array>

namespace quill::decoder {
namespace {

using text::counted;
using text::grouped;

constexpr std::string_view looked_for =
    "What was looked for: a header that says how the text is encoded (\"Content-Transfer-Encoding\"), a \"begin\" line "
    "of UUE or XXE, the first line of BinHex 4.0, an \"=ybegin\" line of yEnc, and rows of encoded text under them.";

/// Returns the name that sentences use for what each kind of marker announces.
constexpr std::string_view announced(Marker::Kind kind) {
    switch (kind) {
        case Marker::Kind::uu_begin:
            return "UUE or XXE text";
        case Marker::Kind::base64_begin:
            return "Base64 text";
        case Marker::Kind::yenc_begin:
            return "yEnc data";
        case Marker::Kind::binhex_begin:
            return "BinHex text";
        case Marker::Kind::base64_header:
            return "a Base64 attachment";
        case Marker::Kind::uu_header:
            return "a UUE attachment";
        case Marker::Kind::quoted_printable:
            return "quoted-printable text";
        case Marker::Kind::encrypted:
            return "an encrypted message";
    }
    return {};
}

/// The reason why a file of each kind could not be decoded, and what to try. In the order of Likely.
struct Advice {
    std::string_view why;
    std::string_view next;
};
constexpr std::array advice = {
    Advice{"The file is empty.", "Save the message again, or have it sent again."},
    Advice{"It is no encoded text: it begins like ",
           "It was decoded already. Give its name the ending that fits and open it with a double click."},
    Advice{"It was saved with two bytes for each character, and encoded text has one.",
           "Open the file in a text editor, save it as plain text (UTF-8 or ASCII), and decode it again."},
    Advice{"It holds bytes that no encoded text has, and it begins like no type of file known here.",
           "It was probably decoded already and lacks the right name, or it is damaged. Ask the sender what it is."},
    Advice{"The message is encrypted. Only the key of the person that it was sent to opens it.",
           "Open it in the mail program that has your key, save the attachment from there, or ask for it unencrypted."},
    Advice{"An encoded file is announced, but what follows the announcement could not be read as one.",
           "Look at the file in a text editor: the rows of encoded text must follow the announcement (after an empty "
           "line where it is a header), and nothing else may stand between them. Delete what does not belong there, "
           "save, and decode again. If the rows are missing, have the message sent again."},
    Advice{"The rows of the text are not ended as lines; <BR> stands between them.",
           "In the repair guide look at the file in the text editor, then open the other options and choose the one "
           "about a long line with <BR>. It writes new.mim, which can be decoded."},
    Advice{"It is quoted-printable text, which hides characters behind '=' and two digits.",
           "In the repair guide choose the check for quoted-printable, or run qpunwrap on the file. If what it makes "
           "is an encoded file again, decode that."},
    Advice{"It looks like UUE, but the line that begins it is missing, so the name is not known.",
           "Put the line \"begin 644 NAME\" above the rows in a text editor, with the name that the file should have, "
           "and \"end\" below them; save, and decode again."},
    Advice{"It looks like Base64 rows without the header that names the file.",
           "In the repair guide look at the file in the text editor, then open the other options and choose the one "
           "about even rows without anything at the top. It writes new.mim, which can be decoded."},
    Advice{"No encoded text was found in it: these are words to be read.",
           "If the attachment should be here, save the message again with all of its text (\"source\", \"raw\" or "
           "\"all headers\" in many mail programs). Of a file posted in parts every part is needed."},
};

std::string about_lines(const TextFacts& facts) {
    std::string out = "It has " + counted(facts.lines, "line");
    if (facts.empty_lines > 0) out += ", " + grouped(facts.empty_lines) + " of them empty";
    out += ".";
    if (facts.usual_count == 0) return out;
    if (facts.lines - facts.empty_lines == 1) {
        out += facts.empty_lines == 0 ? " The line has " : " The other one has ";
        return out + counted(facts.longest, "character") + ".";
    }
    if (facts.shortest == facts.longest) return out + " Each has " + counted(facts.longest, "character") + ".";
    return out + " The shortest has " + counted(facts.shortest, "character") + ", the longest " +
           grouped(facts.longest) + "; the most frequent length is " + grouped(facts.usual_length) + " (" +
           counted(facts.usual_count, "line") + ").";
}

std::string about_alphabets(const TextFacts& facts) {
    std::string out = "Of its " + counted(facts.characters, "character") + " (blanks left out) " +
                      grouped(facts.outside_base64) + " are outside the alphabet of Base64, " +
                      grouped(facts.outside_uu) + " outside that of UUE, " + grouped(facts.outside_xx) +
                      " outside that of XXE and " + grouped(facts.outside_binhex) + " outside that of BinHex.";
    if (facts.control + facts.eight_bit > 0) {
        out += " " + counted(facts.control, "control character") + " and " + counted(facts.eight_bit, "byte") +
               " above 127 are among them.";
    }
    return out;
}

std::string about_signs(const TextFacts& facts) {
    std::string out;
    if (facts.break_tags > 0) out += " <BR> occurs " + counted(facts.break_tags, "time") + ".";
    if (facts.escapes > 0) {
        out += " '=' with two hexadecimal digits occurs " + counted(facts.escapes, "time") + ".";
    }
    if (facts.lone_line_feeds > 0) {
        out += " " + counted(facts.lone_line_feeds, "line feed") +
               " without a carriage return count as characters, since other lines here end in one; an editor that "
               "saves with one kind of line end mends that.";
    }
    return out;
}

std::string about_markers(const TextFacts& facts) {
    std::string out;
    for (const Marker& marker : facts.markers) {
        out += "Line " + grouped(marker.line) + " announces " + std::string(announced(marker.kind)) + ": " +
               marker.text + "\n";
    }
    return out;
}

std::string what_was_seen(const TextFacts& facts) {
    std::string out = "What was seen: the file has " + counted(facts.size, "byte") + ".";
    if (facts.looked_at < facts.size) out += " Only the first " + grouped(facts.looked_at) + " were looked at.";
    if (facts.size == 0) return out + "\n";
    out += " " + about_lines(facts) + " " + about_alphabets(facts) + about_signs(facts) + "\n";
    out += about_markers(facts);
    if (!facts.first_lines.empty()) out += "It begins:\n";
    for (const std::string& line : facts.first_lines) out += "    " + line + "\n";
    return out;
}

bool is_wide_text(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

bool announces(const TextFacts& facts, bool (*wanted)(Marker::Kind)) {
    return std::any_of(facts.markers.begin(), facts.markers.end(),
                       [&](const Marker& marker) { return wanted(marker.kind); });
}

bool is_encoding(Marker::Kind kind) {
    return kind != Marker::Kind::encrypted && kind != Marker::Kind::quoted_printable;
}

/// Returns true if `part` is at least `percent` of `whole`.
bool is_share(std::uint64_t part, std::uint64_t whole, std::uint64_t percent) {
    return whole > 0 && part * 100 >= whole * percent;
}

bool looks_quoted_printable(const TextFacts& facts) {
    constexpr std::uint64_t telling = 3;
    const bool announced_so =
        announces(facts, [](Marker::Kind kind) { return kind == Marker::Kind::quoted_printable; });
    // An encoder leaves no other '=': in addresses and programs most are not followed by two hexadecimal digits.
    return announced_so || (facts.escapes >= telling && is_share(facts.escapes + facts.soft_breaks, facts.equals, 75));
}

bool looks_like_rows_of_base64(const TextFacts& facts) {
    constexpr std::uint64_t row = 30;
    return facts.usual_length >= row && is_share(facts.characters - facts.outside_base64, facts.characters, 98);
}

/// Returns the signature of a file that is not text: texts are explained by their contents.
const codec::FileSignature* known_signature(std::string_view bytes) {
    const codec::FileSignature* signature = codec::signature_of(bytes);
    return signature == nullptr || signature->kind == codec::FileKind::text ? nullptr : signature;
}

}  // namespace

Likely likely_kind(std::string_view bytes, const TextFacts& facts) {
    constexpr std::uint64_t telling_tags = 3;
    constexpr std::uint64_t endless = 500;
    if (facts.size == 0) return Likely::empty;
    if (known_signature(bytes) != nullptr) return Likely::known_file;
    if (is_wide_text(bytes)) return Likely::wide_text;
    if (announces(facts, [](Marker::Kind kind) { return kind == Marker::Kind::encrypted; })) return Likely::encrypted;
    if (announces(facts, is_encoding)) return Likely::damaged_encoding;
    if (is_share(facts.control, facts.characters, 2)) return Likely::binary;
    if (facts.break_tags >= telling_tags && facts.longest >= endless) return Likely::one_long_line;
    if (looks_quoted_printable(facts)) return Likely::quoted_printable;
    if (is_share(facts.full_uu_lines, facts.lines - facts.empty_lines, 50)) return Likely::headless_uu;
    if (looks_like_rows_of_base64(facts)) return Likely::headless_base64;
    return Likely::plain_text;
}

std::string diagnosis_text(std::string_view bytes) {
    const TextFacts facts = look_at(bytes);
    const Likely likely = likely_kind(bytes, facts);
    const Advice& said = advice.at(static_cast<std::size_t>(likely));
    std::string out = "Why it stopped: " + std::string(said.why);
    if (likely == Likely::known_file) {
        const codec::FileSignature& signature = *known_signature(bytes);
        out.append(signature.what).append(", whose name usually ends in ").append(signature.extension).append(".");
    }
    out.append("\n\nWhat to try next: ").append(said.next);
    out.append("\n\n").append(looked_for);
    return out + "\n\n" + what_was_seen(facts);
}

}  // namespace quill::decoder
