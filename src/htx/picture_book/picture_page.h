#pragma once

#include "controls/control.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// The pages of a picture book, one for each picture.
namespace quill::htx {

/// The possible letter sizes, in points.
constexpr std::array<int, 7> letter_sizes = {8, 10, 12, 14, 18, 24, 36};

/// The letters of a book's captions, and its colours.
struct PageStyle {
    int size = 12;  ///< points, one of letter_sizes
    bool bold = false;
    bool italic = false;
    bool has_colours = false;  ///< colours were chosen
    controls::Colour foreground = {0, 0, 0};
    controls::Colour background = {255, 255, 255};

    bool operator==(const PageStyle&) const = default;
};

/// The contents of one page. Text is UTF-8.
struct PicturePage {
    std::string title;
    std::string caption;  ///< may contain HTML; several lines are joined
    bool caption_above = true;
    std::string picture;  ///< name of the picture's file in the page's directory
};

constexpr std::size_t most_pages = 9999;

/// Returns "0001.htm" for 1. REQUIRES: number is at most `most_pages`.
std::string page_name(std::size_t number);

/// Returns the page, lines ended by CR LF. Escapes a title with < or & unless it is plainly markup; characters beyond
/// ASCII become references, because the page declares no character set.
std::string picture_page(const PicturePage& page, const PageStyle& style);

/// Returns a title in the form written into a page: see picture_page.
std::string title_text(std::string_view title);

/// Returns true if each "<" in `text` begins a closed tag, and each "&" a character reference, and there is at least
/// one of them.
bool is_plainly_markup(std::string_view text);

}  // namespace quill::htx
