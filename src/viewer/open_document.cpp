#include "viewer/open_document.h"

#include "files/directory.h"
#include "files/path.h"
#include "viewer/frame_window.h"
#include "viewer/picture_images.h"
#include "viewer/thumbnail_column.h"

#include <optional>
#include <utility>
#include <vector>

namespace quill::viewer {
namespace {

// The position of a window until its picture is ready, in twips: each beside the previous one.
constexpr int first_left = 1815, cascade_step = 360, cascade_steps = 8;

/// Returns the row of the column's list whose picture the window shows.
std::optional<std::size_t> row_of(const tittwo& column, const std::string& path) {
    if (column.current && picture_of_row(column, *column.current).path == path) return column.current;
    for (std::size_t row = 0; row < source_list(column).count(); ++row) {
        if (picture_of_row(column, row).path == path) return row;
    }
    return std::nullopt;
}

/// Keeps the visible picture of the window, and decodes its neighbours.
void decode_neighbours(frmPic& w, const platform::Picture& picture) {
    frmMDI* const frame = w.context.windows.loaded<frmMDI>();
    const tittwo* const column = w.context.windows.loaded<tittwo>();
    if (frame == nullptr || column == nullptr) return;
    frame->pictures.keep(w.path, picture);
    const auto row = row_of(*column, w.path);
    if (!row) return;
    std::vector<std::string> paths = {w.path};
    for (const std::size_t neighbour : {*row + 1, *row - 1}) {
        if (std::string path = picture_of_row(*column, neighbour).path; !path.empty()) paths.push_back(std::move(path));
    }
    frame->pictures.decode_ahead(paths);
}

void take_picture(frmPic& w, const platform::Picture& picture) {
    w.ticket = 0;
    show_pixels(w, picture);
    begin_images(w, picture);
    decode_neighbours(w, picture);
}

/// Runs `ready` with the picture of the file: at once if it was decoded ahead.
void with_picture(frmPic& w, const platform::Pictures::Ready& ready) {
    platform::Pictures& pictures = w.context.platform.pictures();
    if (w.ticket != 0) pictures.cancel(std::exchange(w.ticket, 0));
    stop_images(w);
    const frmMDI* const frame = w.context.windows.loaded<frmMDI>();
    if (const platform::Picture* const ahead = frame == nullptr ? nullptr : frame->pictures.find(w.path)) {
        const platform::Picture picture = *ahead;
        ready(picture);
    } else {
        w.ticket = pictures.request({.source = {.path = w.path}}, ready);
    }
}

/// Returns the column's width; the first call loads the column.
int column_width(shell::Context& context) {
    return show_column(context).width;
}

void take_neighbour(frmPic& w, const platform::Picture& picture) {
    take_picture(w, picture);
    if (w.sm(1).checked) {
        lay_out(w);
    } else {
        zoom_to_fit(w);
    }
}

}  // namespace

int newdocslot(shell::Session& session) {
    session.PicsTable.push_back(nullptr);
    return static_cast<int>(session.PicsTable.size());
}

frmPic& new_picture_window(shell::Context& context) {
    show_frame(context);
    const int slot = newdocslot(context.session);
    auto& w = context.windows.add<frmPic>(context);
    context.session.PicsTable[static_cast<std::size_t>(slot - 1)] = &w;
    w.Tag = std::to_string(slot);
    w.left = first_left + (slot - 1) % cascade_steps * cascade_step;
    w.visible = false;
    return w;
}

frmPic& opendoc(shell::Context& context, const std::string& path, const std::string& title) {
    frmPic& w = new_picture_window(context);
    const tittwo* const column = context.windows.loaded<tittwo>();
    if (column == nullptr || !shows_favorites(*column)) w.Label1.text = files::current_directory();
    if (context.session.PicsMode == 0) w.f(2).enabled = false;
    w.caption = title;
    load_into_new_window(w, path, from_column);
    return w;
}

void load_into_new_window(frmPic& w, const std::string& path, const Placing& placing) {
    w.path = path;
    with_picture(w, [&w, placing](const platform::Picture& picture) {
        take_picture(w, picture);
        place_beside_column(w, placing, column_width(w.context));
        w.visible = true;
        controls::run(w.activate);
    });
}

void show_neighbour(frmPic& w, int step) {
    tittwo* const column = w.context.windows.loaded<tittwo>();
    if (column == nullptr) return;
    const auto row = row_of(*column, w.path);
    const auto moved = static_cast<std::ptrdiff_t>(row.value_or(0)) + step;
    if (!row || moved < 0) return;
    const PictureName next = picture_of_row(*column, static_cast<std::size_t>(moved));
    if (next.path.empty()) return;
    column->current = static_cast<std::size_t>(moved);
    w.path = next.path;
    w.caption = next.title;
    with_picture(w, [&w](const platform::Picture& picture) { take_neighbour(w, picture); });
}

}  // namespace quill::viewer
