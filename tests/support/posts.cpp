#include "support/posts.h"

#include "codec/encoded.h"
#include "codec/hqx.h"
#include "support/strict_reading.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace quill::tests {
namespace {

void append(Rows& to, const Rows& rows) {
    to.insert(to.end(), rows.begin(), rows.end());
}

/// Returns groups of three bytes as four characters; the last group is padded with zeros.
std::string in_groups(std::string_view alphabet, std::string_view bytes) {
    std::string out;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            group = group << 8U | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
        }
        for (int shift = 18; shift >= 0; shift -= 6) out.push_back(alphabet[group >> shift & 63U]);
    }
    return out;
}

Rows between(std::string_view first, const Rows& data, std::string_view last) {
    Rows rows = rows_of(RowKind::begin, first);
    append(rows, data);
    append(rows, rows_of(RowKind::end, last));
    return rows;
}

std::string begin_line(std::string_view name, std::string_view word = "begin") {
    return std::string(word) + " 644 " + std::string(name) + "\n";
}

Rows write_uu(std::string_view bytes, std::string_view name) {
    return between(begin_line(name), sixbit_rows(uu_grave, bytes), "`\nend\n");
}
Rows write_uu_blank(std::string_view bytes, std::string_view name) {
    return between(begin_line(name), sixbit_rows(uu_blank, bytes), " \nend\n");
}
Rows write_uu_check(std::string_view bytes, std::string_view name) {
    Rows rows = sixbit_rows(uu_grave, bytes);
    for (Row& row : rows) row.text.push_back(check_character(row.text));
    return between(begin_line(name), rows, "``\nend\n");
}
Rows write_xx(std::string_view bytes, std::string_view name) {
    return between(begin_line(name), sixbit_rows(xx_alphabet, bytes), "+\nend\n");
}
Rows write_base64(std::string_view bytes, std::string_view) {
    return base64_rows(bytes);
}
Rows write_begin_base64(std::string_view bytes, std::string_view name) {
    return between(begin_line(name, "begin-base64"), base64_rows(bytes, 60), "====\n");
}
Rows write_binhex(std::string_view bytes, std::string_view name) {
    const std::string text = hqx(binhex_of(std::string(bytes), "", std::string(name)));
    const std::size_t first = text.find(':');
    return between(text.substr(0, first), rows_of(RowKind::data, text.substr(first)), "");
}
Rows write_yenc(std::string_view bytes, std::string_view name) {
    return yenc_part({name, bytes, 0, bytes.size()});
}
Rows write_yenc_size(std::string_view bytes, std::string_view name) {
    return yenc_part({.name = name, .bytes = bytes, .size = bytes.size(), .crc = false});
}
Rows write_yenc_parts(std::string_view bytes, std::string_view name) {
    const std::size_t half = bytes.size() / 256 * 128;
    Rows rows = yenc_part({name, bytes.substr(0, half), 0, bytes.size(), 1, 2});
    append(rows, rows_of(RowKind::words, "\n"));
    append(rows, yenc_part({name, bytes.substr(half), half, bytes.size(), 2, 2, crc32_of(bytes)}));
    return rows;
}

Rows write_quoted_printable(std::string_view bytes, std::string_view) {
    Rows rows{{RowKind::data, ""}};
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto c = static_cast<unsigned char>(bytes[at]);
        std::array<char, 4> code{static_cast<char>(c)};
        if (c == '=' || c < 32 || c > 126 || (c == ' ' && at + 1 == bytes.size())) {
            std::snprintf(code.data(), code.size(), "=%02X", c);
        }
        if (rows.back().text.size() > 71) {
            rows.back().text += "=";
            rows.push_back({RowKind::data, ""});
        }
        rows.back().text += code.data();
    }
    return rows;
}

constexpr std::array all_writings = {
    Writing{"uu", "uu", Transfer::none, write_uu, read_uu},
    Writing{"uu-blank", "uu", Transfer::none, write_uu_blank, read_uu_blank},
    Writing{"uu-check", "uu", Transfer::none, write_uu_check, read_uu_check},
    Writing{"xx", "uu", Transfer::none, write_xx, read_xx},
    Writing{"base64", "base64", Transfer::base64, write_base64, read_base64},
    Writing{"begin-base64", "base64", Transfer::none, write_begin_base64, read_begin_base64},
    Writing{"binhex", "binhex", Transfer::none, write_binhex},
    Writing{"yenc", "yenc", Transfer::none, write_yenc},
    Writing{"yenc-size", "yenc", Transfer::none, write_yenc_size, read_yenc_size},
    Writing{"yenc-parts", "yenc", Transfer::none, write_yenc_parts},
    Writing{"quoted-printable", "quoted-printable", Transfer::quoted_printable, write_quoted_printable,
            read_quoted_printable},
};

constexpr std::string_view sender =
    "From: Ann Other <ann@example.net>\nDate: Tue, 3 Mar 1998 10:20:30 +0000\nMessage-ID: <11@example.net>\n";

std::string part_fields(const Writing& writing, unsigned file) {
    const std::string name = std::string(1, static_cast<char>('a' + file)) + ".bin";
    std::string out = "Content-Type: application/octet-stream; name=\"" + name + "\"\nContent-Transfer-Encoding: ";
    out += writing.transfer == Transfer::none     ? "7bit"
           : writing.transfer == Transfer::base64 ? "base64"
                                                  : "quoted-printable";
    return out + "\nContent-Disposition: attachment; filename=\"" + name + "\"\n\n";
}

Rows bare(const Writing&, std::span<const Rows> files) {
    return files[0];
}
Rows mail(const Writing&, std::span<const Rows> files) {
    Rows rows = rows_of(RowKind::head, std::string(sender) + "Subject: a.bin\n\n");
    append(rows, files[0]);
    return rows;
}
Rows post(const Writing&, std::span<const Rows> files) {
    Rows rows = rows_of(RowKind::head, std::string(sender) + "Subject: a.bin\n");
    append(rows, rows_of(RowKind::words, "\nHere is the file that I promised.\n\n"));
    append(rows, files[0]);
    append(rows, rows_of(RowKind::words, "\n-- \nAnn Other, somewhere\n\n_______________\nSent by a list.\n"));
    return rows;
}
Rows single_part(const Writing& writing, std::span<const Rows> files) {
    Rows rows = rows_of(RowKind::head, std::string(sender) + "Subject: a.bin\nMIME-Version: 1.0\n");
    append(rows, rows_of(RowKind::head, part_fields(writing, 0)));
    append(rows, files[0]);
    return rows;
}
Rows mailbox(const Writing& writing, std::span<const Rows> files) {
    const std::string separator = "From ann@example.net Tue Mar  3 10:20:30 1998\n";
    const std::string other = separator + std::string(sender) + "Subject: words\n\nNothing but words.\n\n";
    Rows rows = rows_of(RowKind::head, other + separator);
    append(rows, writing.transfer == Transfer::none ? mail(writing, files) : single_part(writing, files));
    append(rows, rows_of(RowKind::head, "\n" + other));
    return rows;
}
Rows multipart(const Writing& writing, std::span<const Rows> files) {
    Rows rows = rows_of(RowKind::head, std::string(sender) +
                                           "Subject: files\nMIME-Version: 1.0\nContent-Type: multipart/mixed; "
                                           "boundary=\"=_b1\"\n\n");
    append(rows, rows_of(RowKind::boundary, "--=_b1\n"));
    append(rows, rows_of(RowKind::words, "Content-Type: text/plain\n\nSee the files.\n\n"));
    for (unsigned file = 0; file < files.size(); ++file) {
        append(rows, rows_of(RowKind::boundary, "--=_b1\n"));
        append(rows, rows_of(RowKind::head, part_fields(writing, file)));
        append(rows, files[file]);
    }
    append(rows, rows_of(RowKind::boundary, "--=_b1--\n"));
    return rows;
}

constexpr std::array all_containers = {
    Container{"bare", false, false, 1, bare},          Container{"mail", false, false, 1, mail},
    Container{"post", false, false, 1, post},          Container{"single", true, true, 1, single_part},
    Container{"mbox", true, false, 1, mailbox},        Container{"multipart", true, false, 1, multipart},
    Container{"two-parts", true, false, 2, multipart},
};

}  // namespace

std::span<const Writing> writings() {
    return all_writings;
}

const Writing& writing(std::string_view name) {
    return *std::find_if(all_writings.begin(), all_writings.end(), [name](const Writing& w) { return w.name == name; });
}

std::span<const Container> containers() {
    return all_containers;
}

bool fits(const Container& container, const Writing& writing) {
    if (writing.transfer == Transfer::none) return !container.needs_transfer;
    return container.takes_fields || writing.transfer == Transfer::base64;
}

std::string payload(Random& random, const Writing& writing) {
    const std::size_t row = random.once_in(2) ? 45 : 57;
    const std::size_t size = random.once_in(4)   ? 1 + random.below(200)
                             : random.once_in(3) ? (1 + random.below(20)) * row
                                                 : 200 + random.below(3000);
    const std::size_t kind = writing.transfer == Transfer::quoted_printable ? 1 : random.below(4);
    std::string out;
    while (out.size() < size) {
        if (kind == 1) {
            constexpr std::array<std::string_view, 8> words = {"the ", "caf\xE9 ",  "a=b ",   "quill ",
                                                               "and ", "letters, ", "(tea) ", "Wednesday "};
            out += random.of(words);
        } else if (kind == 2 && random.once_in(2)) {
            out.append(1 + random.below(60), '\0');
        } else {
            out.push_back(static_cast<char>(random.next()));
        }
    }
    out.resize(size);
    return out;
}

std::string bytes_of(const Rows& rows) {
    std::string out;
    for (const Row& row : rows) out += row.text + row.end;
    return out;
}

Rows rows_of(RowKind kind, std::string_view text) {
    Rows rows;
    for (std::string& line : lines_of(text)) rows.push_back({kind, std::move(line)});
    return rows;
}

std::uint32_t crc32_of(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1U ^ (crc & 1U ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

Rows yenc_part(const YencPart& part) {
    std::array<char, 9> crc{};
    std::string first = "=ybegin";
    if (part.number != 0) first += " part=" + std::to_string(part.number) + " total=" + std::to_string(part.total);
    first += " line=128 size=" + std::to_string(part.size) + " name=" + std::string(part.name) + "\n";
    std::string last = "=yend size=" + std::to_string(part.bytes.size());
    if (part.number != 0) {
        first += "=ypart begin=" + std::to_string(part.begin + 1) +
                 " end=" + std::to_string(part.begin + part.bytes.size()) + "\n";
        last += " part=" + std::to_string(part.number);
    }
    if (part.crc) {
        std::snprintf(crc.data(), crc.size(), "%08x", crc32_of(part.bytes));
        last += std::string(part.number != 0 ? " pcrc32=" : " crc32=") + crc.data();
    }
    if (part.whole_crc) {
        std::snprintf(crc.data(), crc.size(), "%08x", *part.whole_crc);
        last += std::string(" crc32=") + crc.data();
    }
    Rows data{{RowKind::data, ""}};
    for (const char c : part.bytes) {
        if (data.back().text.size() >= 128) data.push_back({RowKind::data, ""});
        const auto code = static_cast<char>(static_cast<unsigned char>(c) + 42U);
        const bool escaped =
            code == '\0' || code == '\n' || code == '\r' || code == '=' || (data.back().text.empty() && code == '.');
        if (escaped) data.back().text.push_back('=');
        data.back().text.push_back(escaped ? static_cast<char>(static_cast<unsigned char>(code) + 64U) : code);
    }
    return between(first, data, last + "\n");
}

Rows sixbit_rows(std::string_view alphabet, std::string_view bytes, std::size_t full) {
    Rows rows;
    for (std::size_t at = 0; at < bytes.size(); at += full) {
        const std::string_view row = bytes.substr(at, full);
        rows.push_back({RowKind::data, alphabet[row.size()] + in_groups(alphabet, row)});
    }
    return rows;
}

Rows base64_rows(std::string_view bytes, std::size_t width) {
    std::string text = in_groups(base64_alphabet, bytes);
    const std::size_t padding = (3 - bytes.size() % 3) % 3;
    text.replace(text.size() - padding, padding, padding, '=');
    Rows rows;
    for (std::size_t at = 0; at < text.size(); at += width) rows.push_back({RowKind::data, text.substr(at, width)});
    return rows;
}

}  // namespace quill::tests
