#include "desktop/page_pictures.h"

#include "desktop/viewer/pixels_image.h"

#include <utility>

namespace quill::desktop {
namespace {

constexpr int patience = 40;  // milliseconds until a picture is reported, with those that arrived meanwhile

}  // namespace

PagePictures::PagePictures(platform::Pictures& pictures) : pictures_(pictures) {
    report_.setSingleShot(true);
    report_.setInterval(patience);
    report_.callOnTimeout([this] {
        const std::vector<Arrived> fresh = std::exchange(fresh_, {});
        if (arrived) arrived(fresh);
    });
}

PagePictures::~PagePictures() {
    drop_all();
}

void PagePictures::ask(const QUrl& name, const std::string& path, platform::PictureSize bounds) {
    if (waiting_.contains(name)) return;
    const platform::PictureRequest request{.source = {.path = path}, .bounds = bounds};
    waiting_[name] =
        pictures_.request(request, [this, name](const platform::Picture& picture) { take(name, picture); });
}

void PagePictures::drop_all() {
    for (const auto& [name, ticket] : waiting_) pictures_.cancel(ticket);
    waiting_.clear();
    fresh_.clear();
    report_.stop();
}

void PagePictures::take(const QUrl& name, const platform::Picture& picture) {
    waiting_.erase(name);
    const QImage image = image_of(picture.pixels);
    if (image.isNull()) return;
    fresh_.push_back({name, image});
    if (waiting_.empty()) report_.start(0);
    if (!report_.isActive()) report_.start(patience);
}

}  // namespace quill::desktop
