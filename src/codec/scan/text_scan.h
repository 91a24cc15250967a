#pragma once

#include "codec/input/line_cursor.h"
#include "codec/mail/header_block.h"
#include "codec/recovery/found_file.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace quill::codec {

/// The most pieces of one text that are kept besides files, and count only where something asks for them.
constexpr std::size_t most_tentative = 10'000;

/// What a format works on while running text is looked through.
struct TextScan {
    LineCursor& cursor;
    const IsStop& is_stop;  ///< lines that end the text
    Found& found;
    Texts texts = Texts::kept;
    std::size_t room = most_files;  ///< for files
    PartLabel label = {};           ///< what the text last said about the part that it holds
    bool in_armor = false;          ///< within "-----BEGIN ...": Base64 that is not a file
    bool in_message = false;        ///< a header said what this text is
    bool base64_open = false;       ///< a file in Base64 lacks its end in this text
    std::size_t tentative = 0;      ///< pieces among the files that count only where something asks for them
    std::uint32_t order = 0;
    bool full = false;  ///< a file was left out

    /// Enters a file at the end, or at the place `at_order` that was kept for it; not where there are too many, nor a
    /// text that is to be left out.
    void add(FoundFile file) { add(std::move(file), order++); }
    void add(FoundFile file, std::uint32_t at_order);
    void report_full(const Attachment& attachment);
};

/// A format that announces itself, or can be told, in running text.
struct TextFormat {
    std::string_view name;
    /// Whether `line` may begin it: a few comparisons, as it is asked for each line of text.
    bool (*sniff)(std::string_view line);
    /// Looks closer, with the cursor behind `line`. Where it is one: reads it to its end, adds it, and returns true.
    /// Else the cursor is left where it was. Looks ahead no more than a few lines before it decides.
    bool (*open)(TextScan& scan, const Line& line);
};

/// The formats in the order in which they are asked; weak ones, which have no first line of their own, come last.
std::span<const TextFormat> text_formats();

bool sniff_begin(std::string_view line);
bool open_begin(TextScan& scan, const Line& line);
bool sniff_quoted_begin(std::string_view line);
bool open_quoted_begin(TextScan& scan, const Line& line);
bool sniff_yenc(std::string_view line);
bool open_yenc(TextScan& scan, const Line& line);
bool sniff_binhex(std::string_view line);
bool open_binhex(TextScan& scan, const Line& line);
bool sniff_armor(std::string_view line);
bool open_armor(TextScan& scan, const Line& line);
bool sniff_bare_uu(std::string_view line);
bool open_bare_uu(TextScan& scan, const Line& line);
bool sniff_bare_base64(std::string_view line);
bool open_bare_base64(TextScan& scan, const Line& line);
bool sniff_bare_binhex(std::string_view line);
bool open_bare_binhex(TextScan& scan, const Line& line);
bool sniff_bare_quoted_printable(std::string_view line);
bool open_bare_quoted_printable(TextScan& scan, const Line& line);

/// Characters of a line that are looked at before a format is sure of itself.
constexpr std::size_t peeked_characters = 1024;

/// The next line that is not blank, up to `most` lines ahead; false where there is none before a stop line.
bool peek_text(const TextScan& scan, Position at, unsigned most, Line& line);

bool is_blank_line(std::string_view line);

/// Whether `line` is a full line of BinHex data, and not drawn of a few characters.
bool is_binhex_line(std::string_view line);

}  // namespace quill::codec
