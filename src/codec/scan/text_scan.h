#pragma once

#include "codec/input/line_cursor.h"
#include "codec/mail/header_block.h"
#include "codec/recovery/found_file.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace quill::codec {

/// The most pieces of one text that are kept besides files, and count only if something asks for them.
constexpr std::size_t most_tentative = 10'000;

/// The state of a format while running text is scanned.
struct TextScan {
    LineCursor& cursor;
    const IsStop& is_stop;  ///< lines that end the text
    Found& found;
    Texts texts = Texts::kept;
    std::size_t room = most_files;  ///< for files
    std::uint32_t part_number = 0;  ///< that the input's name states
    PartLabel label = {};           ///< the last label in the text about its part
    bool in_armor = false;          ///< within "-----BEGIN ...": Base64 that is not a file
    bool in_message = false;        ///< a header described this text
    bool base64_open = false;       ///< a Base64 file lacks its end in this text
    std::size_t tentative = 0;      ///< pieces among the files that count only if something asks for them
    std::uint32_t order = 0;
    bool full = false;  ///< a file was left out

    /// Returns true if the label, or else the input's name, announces a later part.
    bool announces_later_part() const { return (label.number > 0 ? label.number : part_number) > 1; }

    /// Adds a file at the end, or at the place `at_order` reserved for it; not if there are too many, or if it is a
    /// text to be left out.
    void add(FoundFile file) { add(std::move(file), order++); }
    void add(FoundFile file, std::uint32_t at_order);
    void report_full(const Attachment& attachment);
};

/// A format that announces itself in running text, or can be recognised there.
struct TextFormat {
    std::string_view name;
    /// Returns true if `line` may begin it: a few comparisons, because it is called for each line of text.
    bool (*sniff)(std::string_view line);
    /// Checks more closely, with the cursor after `line`. If the format is present, reads it to its end, adds it, and
    /// returns true. Otherwise leaves the cursor in its place. Looks ahead at most a few lines before it decides.
    bool (*open)(TextScan& scan, const Line& line);
};

/// Returns the formats in the order in which they are tried; weak ones, without a distinctive first line, come last.
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

/// Characters of a line that a format reads before it is sure.
constexpr std::size_t peeked_characters = 1024;

/// Finds the next line that is not blank, up to `most` lines ahead; returns false if there is none before a stop line.
bool peek_text(const TextScan& scan, Position at, unsigned most, Line& line);

bool is_blank_line(std::string_view line);

/// Returns true if `line` is a full line of BinHex data, and not a drawing of a few characters.
bool is_binhex_line(std::string_view line);

}  // namespace quill::codec
