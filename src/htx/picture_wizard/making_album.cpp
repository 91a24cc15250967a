#include "files/path.h"
#include "htx/picture_wizard/making.h"
#include "htx/picture_wizard/steps.h"
#include "pics/thumbnail.h"
#include "pics/writing.h"
#include "viewer/album_run.h"
#include "viewer/frame_window.h"

#include <utility>

namespace quill::htx {
namespace {

constexpr auto about_to_decode =
    "   This program is now going to load all the pictures on your list to make thumbnails of them. They are loaded "
    "one at a time, which takes a while for many pictures. Leave the box \"Create separate thumbnails\" unchecked to "
    "go without them.";

/// Returns the readable pictures in their new order; reports the others.
std::vector<pics::Item> items_of(HtxWiz& w) {
    std::vector<pics::Item> items;
    for (const std::size_t place : order_of(w)) {
        items.push_back({.path = w.List1.items().at(place), .name = w.List2.items().at(place)});
    }
    const std::vector<pics::WriteFailure> missing = pics::measure(items);
    std::string names;
    for (auto failure = missing.rbegin(); failure != missing.rend(); ++failure) {
        names = "\n" + items[*failure->item].path + names;
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(*failure->item));
    }
    if (!names.empty()) w.context.platform.warn("These pictures can't be read and are left out:\n" + names);
    if (items.empty()) w.context.platform.message("There are no pictures for the album.");
    return items;
}

void report_blank_thumbnails(HtxWiz& w) {
    if (w.thumbnails.without.empty()) return;
    std::string names;
    for (const std::string& path : w.thumbnails.without) names += "\n" + path;
    w.context.platform.message("The thumbnails of these pictures are blank, because they can't be shown:\n" + names);
}

void write(HtxWiz& w, pics::AlbumRequest request) {
    switch (viewer::run_album(w.context, std::move(request))) {
        case viewer::AlbumEnd::made:
            report_blank_thumbnails(w);
            viewer::close_frame(w.context);
            return finish(w);
        case viewer::AlbumEnd::name_taken:
            w.Text5.text.clear();
            w.Command4.enabled = false;
            return;
        case viewer::AlbumEnd::not_made:
            return;
    }
}

void end_decoding(HtxWiz& w) {
    if (w.thumbnails.ticket != 0) w.context.platform.pictures().cancel(std::exchange(w.thumbnails.ticket, 0));
    w.doing.visible = w.bar.visible = w.stop.visible = false;
    w.Command4.enabled = w.Text5.enabled = true;
}

/// Decodes the pictures for the thumbnails, one after another, and writes the album after the last one.
void decode_next(HtxWiz& w, const pics::AlbumRequest& request) {
    const std::size_t number = w.thumbnails.made.size(), count = request.items.size();
    if (number == count) {
        end_decoding(w);
        pics::AlbumRequest whole = request;
        whole.thumbnail = [&w, at = std::size_t{0}](const pics::Item&) mutable { return w.thumbnails.made.at(at++); };
        return write(w, std::move(whole));
    }
    const std::string path = request.items[number].path;
    w.doing.text = "Please wait - Creating Thumbview " + std::to_string(number + 1) + " of " + std::to_string(count);
    w.bar_done.left = static_cast<int>(static_cast<std::size_t>(w.bar.width) * number / count);
    w.thumbnails.ticket = w.context.platform.pictures().request(
        {.source = {.path = path}, .bounds = pics::thumbnail_bounds, .priority = platform::PicturePriority::background},
        [&w, request, path](const platform::Picture& picture) {
            w.thumbnails.ticket = 0;
            if (picture.state == platform::PictureState::failed) w.thumbnails.without.push_back(path);
            w.thumbnails.made.push_back(pics::thumbnail_of(picture.pixels, picture.original));
            decode_next(w, request);
        });
}

}  // namespace

void make_album(HtxWiz& w, const std::string& path) {
    pics::AlbumRequest request{.path = path, .items = items_of(w)};
    if (request.items.empty()) return;
    if (!w.Check1.checked) return write(w, std::move(request));
    request.form = pics::Form::with_thumbnails;
    w.context.platform.message(about_to_decode);
    w.thumbnails = {};
    w.Command4.enabled = w.Text5.enabled = false;
    w.doing.visible = w.bar.visible = w.stop.visible = true;
    w.stop.click = [&w] { end_decoding(w); };
    decode_next(w, request);
}

}  // namespace quill::htx
