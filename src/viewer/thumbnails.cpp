#include "viewer/thumbnails.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace quill::viewer {
namespace {

std::size_t bytes_of(const platform::Picture& picture) {
    constexpr std::size_t beside_pixels = 512;
    return beside_pixels + picture.pixels.stride * static_cast<std::size_t>(picture.pixels.size.height);
}

}  // namespace

Thumbnails::~Thumbnails() {
    for (const auto& [path, ticket] : waiting_) pictures_.cancel(ticket);
}

void Thumbnails::look_at(const std::vector<std::string>& visible, const std::vector<std::string>& nearby) {
    std::set<std::string_view> wanted(visible.begin(), visible.end());
    wanted.insert(nearby.begin(), nearby.end());
    std::erase_if(waiting_, [&](const auto& request) {
        const bool gone = !wanted.contains(request.first);
        if (gone) pictures_.cancel(request.second);
        return gone;
    });
    for (const std::string& path : nearby) ask(path, platform::PicturePriority::nearby);
    for (const std::string& path : visible) ask(path, platform::PicturePriority::visible);
}

const platform::Picture* Thumbnails::find(const std::string& path) const {
    const auto kept = kept_.find(path);
    return kept == kept_.end() ? nullptr : &kept->second.picture;
}

void Thumbnails::forget(const std::string& path) {
    const auto kept = kept_.find(path);
    if (kept == kept_.end()) return;
    bytes_ -= bytes_of(kept->second.picture);
    used_.erase(kept->second.use);
    kept_.erase(kept);
}

void Thumbnails::set_side(int side) {
    if (std::exchange(side_, side) == side) return;
    for (const auto& [path, ticket] : waiting_) pictures_.cancel(ticket);
    waiting_.clear();
    kept_.clear();
    used_.clear();
    bytes_ = 0;
}

void Thumbnails::ask(const std::string& path, platform::PicturePriority priority) {
    if (const auto kept = kept_.find(path); kept != kept_.end()) {
        touch(kept->second);
        return;
    }
    if (const auto waiting = waiting_.find(path); waiting != waiting_.end()) {
        pictures_.prioritise(waiting->second, priority);
        return;
    }
    const platform::PictureRequest request{.source = {.path = path},
                                           .bounds = {side_, side_},
                                           .priority = priority,
                                           .thumbnail = !path.starts_with(passing_)};
    waiting_[path] =
        pictures_.request(request, [this, path](const platform::Picture& picture) { take(path, picture); });
}

void Thumbnails::take(const std::string& path, const platform::Picture& picture) {
    waiting_.erase(path);
    forget(path);
    used_.push_front(path);
    kept_.emplace(path, Kept{picture, used_.begin()});
    bytes_ += bytes_of(picture);
    while (bytes_ > most_bytes && used_.size() > 1) drop_oldest();
    if (changed) changed(path);
}

void Thumbnails::touch(Kept& kept) {
    used_.splice(used_.begin(), used_, kept.use);
}

void Thumbnails::drop_oldest() {
    const std::string oldest = used_.back();
    forget(oldest);
}

}  // namespace quill::viewer
