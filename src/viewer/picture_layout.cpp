#include "viewer/picture_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace quill::viewer {
namespace {

constexpr std::array<ZoomLevel, 19> levels = {{{"20% (1 to 5)", 0.2},
                                               {"25% (1 to 4)", 0.25},
                                               {"33% (1 to 3)", 0.33},
                                               {"50% (1 to 5)", 0.5},
                                               {"66% (2 to 3)", 0.66},
                                               {"75% (3 to 4)", 0.75},
                                               {"100% (1 to 1)", 1},
                                               {"120% (1.5 to 1)", 1.2},
                                               {"125% (1.25 to 1)", 1.25},
                                               {"150% (1.5 to 1)", 1.5},
                                               {"166% (1.66 to 1)", 1.66},
                                               {"175% (1.75 to 1)", 1.75},
                                               {"200% (2 to 1)", 2},
                                               {"250% (2.5 to 1)", 2.5},
                                               {"200% (3 to 1)", 3},
                                               {"350% (3.5 to 1)", 3.5},
                                               {"400% (4 to 1)", 4},
                                               {"450% (4.5 to 1)", 4.5},
                                               {"500% (5 to 1)", 5}}};

// Width and height of the window's frame in twips: around the picture when it opens, around the pane later.
constexpr int frame_width = 120, frame_height = 500;
constexpr int pane_frame_width = 270, pane_frame_height = 650;
constexpr int bar_gap = 40;  // between the pane and a scroll bar
constexpr std::int64_t most_flipped_pixels = 100'000'000;
constexpr double least_side = 1, greatest_side = 1'000'000;

double pixel(const frmPic& w) {
    return w.context.platform.machine().twips_per_pixel();
}

void set_displayed_size(frmPic& w, double width, double height) {
    w.Image1.width = static_cast<float>(width);
    w.Image1.height = static_cast<float>(height);
}

void fill_pane(frmPic& w) {
    w.HScroll1.visible = w.VScroll1.visible = false;
    set_displayed_size(w, w.Picture1.width / pixel(w), w.Picture1.height / pixel(w));
    w.Image1.left = w.Image1.top = 0;
}

/// Moves a bar, and the picture with it, to the beginning.
void begin_bar(PaneBar& bar, double hidden_pixels, float& place) {
    bar.visible = true;
    bar.maximum = static_cast<std::size_t>(std::max(1L, std::lround(hidden_pixels)));
    bar.value = 1;
    place = -1;
}

void move_bar(PaneBar& bar, double to) {
    if (!bar.visible) return;
    bar.value = static_cast<std::size_t>(std::lround(std::clamp(to, 1.0, static_cast<double>(bar.maximum))));
}

/// Returns the position of the pane's pixel `at` on the picture, as a fraction of its displayed length.
double part_at(double at, const PaneBar& bar, double length) {
    const double scrolled = bar.visible ? static_cast<double>(bar.value) : 0;
    return length > 0 ? (at + scrolled) / length : 0;
}

void zoom_about_middle(frmPic& w, double factor) {
    zoom_at(w, factor, w.Picture1.width / pixel(w) / 2, w.Picture1.height / pixel(w) / 2);
}

}  // namespace

const ZoomLevel& zoom_level(int i) {
    return levels.at(static_cast<std::size_t>(i - 1));
}

void lay_out(frmPic& w) {
    const double unit = pixel(w);
    w.Picture1.width = std::max(0, w.width - pane_frame_width);
    w.Picture1.height = std::max(0, w.height - pane_frame_height);
    if (w.sm(1).checked) {
        fill_pane(w);
        return;
    }
    w.HScroll1.visible = w.VScroll1.visible = false;
    if (!w.f(8).checked) return;
    if (w.Image1.width * unit > w.Picture1.width) {
        w.Picture1.height -= w.HScroll1.height;
        w.HScroll1.top = w.Picture1.height + bar_gap;
        begin_bar(w.HScroll1, w.Image1.width - w.Picture1.width / unit, w.Image1.left);
    }
    if (w.Image1.height * unit > w.Picture1.height) {
        w.Picture1.width -= w.VScroll1.width;
        w.VScroll1.left = w.Picture1.width + bar_gap;
        begin_bar(w.VScroll1, w.Image1.height - w.Picture1.height / unit, w.Image1.top);
    }
    w.HScroll1.width = w.Picture1.width;
    w.VScroll1.height = w.Picture1.height;
}

void follow_scroll_bars(frmPic& w) {
    if (w.HScroll1.visible) w.Image1.left = -static_cast<float>(w.HScroll1.value);
    if (w.VScroll1.visible) w.Image1.top = -static_cast<float>(w.VScroll1.value);
}

void zoom_in(frmPic& w) {
    constexpr double step = 1.1;
    set_displayed_size(w, w.Image1.width * step, w.Image1.height * step);
    lay_out(w);
}

void zoom_out(frmPic& w) {
    constexpr double step = 0.9;
    set_displayed_size(w, w.Image1.width * step, w.Image1.height * step);
    lay_out(w);
}

void set_zoom_level(frmPic& w, int i) {
    const double factor = zoom_level(i).factor;
    set_displayed_size(w, factor * w.Image20.width, factor * w.Image20.height);
    lay_out(w);
}

void zoom_at(frmPic& w, double factor, double x, double y) {
    if (w.sm(1).checked) return;
    const double width = w.Image1.width * factor, height = w.Image1.height * factor;
    if (std::max(width, height) > greatest_side || std::max(width, height) < least_side) return;
    const double across = part_at(x, w.HScroll1, w.Image1.width), down = part_at(y, w.VScroll1, w.Image1.height);
    w.Image1.stretch = true;
    set_displayed_size(w, width, height);
    lay_out(w);
    move_bar(w.HScroll1, across * width - x);
    move_bar(w.VScroll1, down * height - y);
    follow_scroll_bars(w);
}

void zoom_to_natural_size(frmPic& w) {
    if (w.Image1.width > 0) zoom_about_middle(w, w.Image20.width / w.Image1.width);
}

void zoom_to_fit(frmPic& w) {
    if (w.sm(1).checked || w.Image20.width <= 0 || w.Image20.height <= 0) return;
    const double unit = pixel(w);
    const double pane_width = (w.width - pane_frame_width) / unit, pane_height = (w.height - pane_frame_height) / unit;
    const double factor = std::min({1.0, pane_width / w.Image20.width, pane_height / w.Image20.height});
    w.Image1.stretch = true;
    set_displayed_size(w, w.Image20.width * factor, w.Image20.height * factor);
    lay_out(w);
}

void pan(frmPic& w, double right, double down) {
    move_bar(w.HScroll1, static_cast<double>(w.HScroll1.value) - right);
    move_bar(w.VScroll1, static_cast<double>(w.VScroll1.value) - down);
    follow_scroll_bars(w);
}

void toggle_fit_mode(frmPic& w) {
    const bool enters = !w.sm(1).checked;
    w.sm(1).checked = w.scm(1).checked = enters;
    w.sm(2).checked = w.scm(2).checked = !enters;
    w.Image1.stretch = enters;
    if (!enters) {
        set_displayed_size(w, w.Image20.width, w.Image20.height);
        w.width = static_cast<int>(pixel(w) * w.Image20.width) + frame_width;
        w.height = static_cast<int>(pixel(w) * w.Image20.height) + frame_height;
    }
    lay_out(w);
}

void flip(frmPic& w, Axis axis) {
    const platform::PictureSize size{static_cast<int>(std::lround(w.Image1.width)),
                                     static_cast<int>(std::lround(w.Image1.height))};
    if (std::int64_t{size.width} * size.height > most_flipped_pixels) return;
    w.opb.width = w.npb.width = size.width;
    w.opb.height = w.npb.height = size.height;
    w.Image1.take(mirrored(w.Image1.pixels, size, axis));
}

void place_beside_column(frmPic& w, const Placing& placing, int column_width) {
    const platform::Machine& machine = w.context.platform.machine();
    w.width = static_cast<int>(pixel(w) * w.Image1.width) + frame_width;
    w.height = static_cast<int>(pixel(w) * w.Image1.height) + frame_height;
    w.top = 0;
    if (placing.at_column || w.left < column_width) w.left = column_width;
    w.height = std::min(w.height, machine.screen_height() - placing.below);
    const int widest = machine.screen_width() - column_width - placing.beside;
    if (w.width > widest) {
        w.width = widest;
        w.left = column_width;
    }
    lay_out(w);
}

}  // namespace quill::viewer
