#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "text/ascii.h"
#include "viewer/favorites_list.h"
#include "viewer/frame_window.h"
#include "viewer/picture_names.h"
#include "viewer/thumbnail_column.h"

#include <algorithm>
#include <array>
#include <system_error>

/// The lists that feed the column's cells, and the page of them that the cells show.
namespace quill::viewer {
namespace {

/// The last three letters of a name, and their meaning.
struct KindRow {
    std::string_view ending;
    CellKind kind;
};
constexpr std::array<KindRow, 39> kinds = {
    {{"jpg", CellKind::picture}, {"gif", CellKind::picture}, {"pcx", CellKind::picture}, {"png", CellKind::picture},
     {"fif", CellKind::picture}, {"tga", CellKind::picture}, {"tif", CellKind::picture}, {"dib", CellKind::picture},
     {"bmp", CellKind::picture}, {"ico", CellKind::icon},    {"hpp", CellKind::icon},    {"txt", CellKind::other},
     {"txx", CellKind::other},   {"wri", CellKind::other},   {"doc", CellKind::other},   {"dox", CellKind::other},
     {"bmx", CellKind::other},   {"hlp", CellKind::other},   {"htm", CellKind::other},   {"tml", CellKind::other},
     {"htx", CellKind::other},   {"zip", CellKind::other},   {"mim", CellKind::other},   {"mme", CellKind::other},
     {"uue", CellKind::other},   {"xxe", CellKind::other},   {"xls", CellKind::other},   {"mdb", CellKind::other},
     {"url", CellKind::other},   {"web", CellKind::other},   {"avi", CellKind::other},   {"mpg", CellKind::other},
     {"mov", CellKind::other},   {"fli", CellKind::other}}};

std::filesystem::file_time_type time_of(const std::string& path) {
    std::error_code error;
    return std::filesystem::last_write_time(path, error);
}

tittwo::Stamp stamp_of(std::vector<std::string> paths) {
    tittwo::Stamp stamp;
    stamp.of = std::move(paths);
    for (const std::string& path : stamp.of) stamp.times.push_back(time_of(path));
    return stamp;
}

/// Returns the current sources of the list that feeds the cells.
tittwo::Stamp current_stamp(const tittwo& w) {
    if (shows_favorites(w)) return stamp_of({w.context.session.FavListPath});
    return w.context.session.PicsMode == 0 ? stamp_of(w.List2.items()) : tittwo::Stamp();
}

std::vector<std::string> pictures_in(const controls::ListBox& directories) {
    std::vector<std::string> paths;
    for (const std::string& directory : directories.items()) {
        const auto names = files::list_files(directory, column_patterns());
        if (!names) continue;
        for (const std::string& name : *names) paths.push_back(files::join(directory, name));
    }
    return paths;
}

void paintcell(tittwo& w, const std::string& item, int cell) {
    PictureCell& to = w.Image7(cell);
    to.item = item;
    to.kind = cell_kind(item);
    if (to.kind == CellKind::picture) to.stretch = true;
}

/// Decodes the visible thumbnails, then their neighbours.
void look_at(tittwo& w, const controls::ListBox& list, std::size_t first, std::size_t shown) {
    const auto& items = list.items();
    const auto part = [&](std::size_t from, std::size_t to) {
        const auto at = [&](std::size_t i) {
            return items.begin() + static_cast<std::ptrdiff_t>(std::min(i, items.size()));
        };
        return std::vector<std::string>(at(from), at(to));
    };
    std::vector<std::string> nearby = part(first + shown, first + 2 * shown);
    for (std::string& path : part(first - std::min(first, shown), first)) nearby.push_back(std::move(path));
    w.thumbnails.look_at(part(first, first + shown), nearby);
}

void paintpage(tittwo& w, const controls::ListBox& list, std::size_t counted) {
    const auto page = static_cast<std::size_t>(w.cellpage);
    w.Image7.for_each([](int, PictureCell& cell) { cell = PictureCell(); });
    w.VScroll1.maximum = counted - std::min(counted, page);
    w.VScroll1.value = std::min(w.VScroll1.value, w.VScroll1.maximum);
    w.VScroll1.visible = list.count() > page;
    const std::size_t first = w.VScroll1.visible ? w.VScroll1.value : 0;
    const std::size_t shown = std::min(page, list.count() - std::min(first, list.count()));
    for (std::size_t i = 0; i < shown; ++i) paintcell(w, list.items()[first + i], static_cast<int>(i));
    if (w.current && *w.current >= list.count()) w.current.reset();
    w.sight ? look_at(w, list, w.sight->first, w.sight->count) : look_at(w, list, first, shown);
}

/// Returns the number of files; an album with thumbnails has two for each picture.
std::size_t counted_files(const tittwo& w) {
    const std::size_t count = w.List3.count();
    return w.context.session.PicsMode == 2 ? (count + 1) / 2 : count;
}

void build_files(tittwo& w) {
    w.List3.assign(w.set.empty() ? pictures_in(w.List2) : w.set);
}

void build_album(tittwo& w) {
    const frmMDI& frame = show_frame(w.context);
    std::vector<std::string> paths;
    for (const std::string& name : frame.List1.items()) {
        if (w.context.session.PicsMode == 2 && !is_album_thumbnail(name)) continue;
        paths.push_back(files::join(album_directory(w.context.session), name));
    }
    w.List1.assign(std::move(paths));
}

void build_favorites(tittwo& w) {
    std::vector<std::string> paths;
    for (std::string& path : favorite_pictures(w.context.session.FavListPath)) {
        if (files::file_size(path).value_or(0) > 0) paths.push_back(std::move(path));
    }
    w.List1.assign(std::move(paths));
}

void paint(tittwo& w) {
    const controls::ListBox& list = source_list(w);
    paintpage(w, list, &list == &w.List3 ? counted_files(w) : list.count());
}

template <class Build>
void rebuild(tittwo& w, Build build) {
    w.built_from = current_stamp(w);
    build(w);
}

}  // namespace

CellKind cell_kind(std::string_view name) {
    const std::string lower = text::to_lower(name);
    const std::string_view ending = text::last(lower, 3);
    if (ending == "peg" && lower.size() > 3) {
        const char before = lower[lower.size() - 4];
        if (before == 'j') return CellKind::picture;
        return before == 'm' ? CellKind::other : CellKind::nothing;
    }
    const auto* const row =
        std::find_if(kinds.begin(), kinds.end(), [&](const KindRow& each) { return each.ending == ending; });
    if (row != kinds.end()) return row->kind;
    return files::matches(name, further_patterns()) ? CellKind::picture : CellKind::nothing;
}

int cells_of_page(int screen_height) {
    struct Row {
        int below, cells;
    };
    constexpr std::array<Row, 6> rows = {{{7900, 5}, {11000, 6}, {12950, 8}, {13000, 9}, {15000, 10}, {15400, 11}}};
    for (const Row& row : rows) {
        if (screen_height < row.below) return row.cells;
    }
    return screen_height > 17990 ? 13 : 12;
}

const controls::ListBox& source_list(const tittwo& w) {
    return !shows_favorites(w) && w.context.session.PicsMode == 0 ? w.List3 : w.List1;
}

void imgrefresh(tittwo& w) {
    rebuild(w, build_files);
    paintpage(w, w.List3, counted_files(w));
}

void getps(tittwo& w) {
    rebuild(w, build_album);
    paintpage(w, w.List1, w.List1.count());
}

void loadfavlist(tittwo& w) {
    static_cast<void>(make_favorites_list(w.context.session.FavListPath));  // without a list, nothing is shown
    rebuild(w, build_favorites);
    paintpage(w, w.List1, w.List1.count());
}

void refresh_column(tittwo& w) {
    if (shows_favorites(w)) {
        loadfavlist(w);
    } else if (w.context.session.PicsMode != 0) {
        getps(w);
    } else {
        imgrefresh(w);
    }
}

void look_at_rows(tittwo& w, std::size_t first, std::size_t count) {
    w.sight = tittwo::Sight{first, count};
    w.VScroll1.value = std::min(first, w.VScroll1.maximum);
    scroll_column(w);
}

void scroll_column(tittwo& w) {
    if (current_stamp(w) == w.built_from) {
        paint(w);
    } else {
        refresh_column(w);
    }
}

}  // namespace quill::viewer
