#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quill::htx {

/// The member of a book that states where its window opens.
constexpr std::string_view geometry_member = "index.r29";

/// Size and place of a book's window, in twips. All zero: unknown.
struct BookGeometry {
    float width = 0, height = 0, top = 0, left = 0;

    bool operator==(const BookGeometry&) const = default;
};

/// Returns the four lines of index.r29: width, height, top, left, each ended by CR LF.
std::string format_geometry(const BookGeometry& geometry);

/// Reads index.r29: four fields between commas or line ends. A missing or invalid number counts as 0.
BookGeometry parse_geometry(std::string_view text);

/// A screen's place on the desktop, in twips.
struct ScreenArea {
    float left = 0, top = 0, width = 0, height = 0;
};

/// Moves and shrinks a window so that all of it is on the screen: one that is too wide begins at the left edge and gets
/// the screen's width, any other that extends beyond the right edge ends there, and one that begins left of the screen
/// begins at its left edge; the same for height and top.
BookGeometry fit_to_screen(BookGeometry geometry, const ScreenArea& screen);

/// The same with the screen, of those that are there, which most of the window lies on; the first where it lies on
/// none.
BookGeometry fit_to_screens(const BookGeometry& geometry, const std::vector<ScreenArea>& screens);

}  // namespace quill::htx
