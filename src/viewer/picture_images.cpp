#include "viewer/picture_images.h"

#include "viewer/picture_layout.h"

#include <algorithm>
#include <utility>

namespace quill::viewer {
namespace {

// Milliseconds. Frames with almost no stated time are meant to be shown for the usual one, as web browsers do.
constexpr int least_stated = 10, usual_time = 100, least_time = 20;

/// Returns the window's note on an incomplete picture.
std::string note_on(const platform::Picture& picture) {
    switch (picture.state) {
        case platform::PictureState::whole:
            return {};
        case platform::PictureState::failed:
            return "This picture can't be shown: " + picture.reason + ".";
        case platform::PictureState::partial:
            return "Only " + std::to_string(picture.decoded_percent) +
                   "% of this picture could be read: " + picture.reason + ".";
    }
    return {};
}

void number_page(frmPic& w) {
    w.page_number.text = "Page " + std::to_string(w.images.shown + 1) + " of " + std::to_string(w.images.count);
    w.page_back.enabled = w.images.shown > 0;
    w.page_on.enabled = w.images.shown + 1 < w.images.count;
}

void ask(frmPic& w, std::size_t index, const platform::Pictures::Ready& ready) {
    platform::Pictures& pictures = w.context.platform.pictures();
    if (w.images.ticket != 0) pictures.cancel(w.images.ticket);
    w.images.ticket = pictures.request({.source = {.path = w.path}, .index = index}, [&w, ready](const auto& picture) {
        w.images.ticket = 0;
        ready(picture);
    });
}

void show_next_frame(frmPic& w);

/// Decodes the next frame while this one is shown; ends the animation after its last round.
void ask_for_next_frame(frmPic& w) {
    std::size_t next = w.images.shown + 1;
    if (next >= w.images.count) {
        next = 0;
        w.frame_time.enabled = w.images.repeats != 0;
        if (w.images.repeats == 0) return;
        if (w.images.repeats > 0) --w.images.repeats;
    }
    ask(w, next, [&w, next](const platform::Picture& picture) {
        w.images.next = picture;
        w.images.next_index = next;
        if (w.images.overdue) show_next_frame(w);
    });
}

void time_frame(frmPic& w, int delay) {
    w.frame_time.interval = delay <= least_stated ? usual_time : std::max(delay, least_time);
    w.frame_time.enabled = true;
}

void show_next_frame(frmPic& w) {
    const platform::Picture frame = *std::exchange(w.images.next, std::nullopt);
    w.images.overdue = false;
    if (frame.pixels.bytes == nullptr) return stop_images(w);
    w.images.shown = w.images.next_index;
    w.Image1.take(frame.pixels);
    time_frame(w, frame.delay);
    ask_for_next_frame(w);
}

}  // namespace

void show_pixels(frmPic& w, const platform::Picture& picture) {
    w.Image20.take(picture.pixels);
    w.Image1.take(picture.pixels);
    w.Image20.width = w.Image1.width = static_cast<float>(picture.pixels.size.width);
    w.Image20.height = w.Image1.height = static_cast<float>(picture.pixels.size.height);
    w.Image1.left = w.Image1.top = 0;
    w.Image1.stretch = true;
    w.note.text = note_on(picture);
    w.note.visible = !w.note.text.empty();
}

void begin_images(frmPic& w, const platform::Picture& first) {
    stop_images(w);
    w.images = {};
    w.images.count = first.count;
    w.images.repeats = first.repeats;
    w.pages.visible = first.count > 1 && !first.animated;
    if (w.pages.visible) number_page(w);
    if (!first.animated || first.count < 2 || first.state != platform::PictureState::whole) return;
    time_frame(w, first.delay);
    ask_for_next_frame(w);
}

void turn_page(frmPic& w, int step) {
    const auto page = static_cast<std::ptrdiff_t>(w.images.shown) + step;
    if (!w.pages.visible || page < 0 || page >= static_cast<std::ptrdiff_t>(w.images.count)) return;
    ask(w, static_cast<std::size_t>(page), [&w, page](const platform::Picture& picture) {
        w.images.shown = static_cast<std::size_t>(page);
        show_pixels(w, picture);
        number_page(w);
        if (w.sm(1).checked) {
            lay_out(w);
        } else {
            zoom_to_fit(w);
        }
    });
}

void end_frame(frmPic& w) {
    if (w.images.next) {
        show_next_frame(w);
    } else {
        w.images.overdue = true;
    }
}

void stop_images(frmPic& w) {
    w.frame_time.enabled = false;
    if (w.images.ticket != 0) w.context.platform.pictures().cancel(std::exchange(w.images.ticket, 0));
}

}  // namespace quill::viewer
