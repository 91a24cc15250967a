#include "viewer/decoded_pictures.h"

#include <algorithm>

namespace quill::viewer {
namespace {

bool contains(const std::vector<std::string>& paths, const std::string& path) {
    return std::find(paths.begin(), paths.end(), path) != paths.end();
}

std::size_t bytes_of(const platform::Picture& picture) {
    return picture.pixels.stride * static_cast<std::size_t>(picture.pixels.size.height);
}

}  // namespace

DecodedPictures::~DecodedPictures() {
    for (const auto& [path, ticket] : waiting_) pictures_.cancel(ticket);
}

void DecodedPictures::decode_ahead(const std::vector<std::string>& paths) {
    std::erase_if(kept_, [&](const auto& each) { return !contains(paths, each.first); });
    std::erase_if(waiting_, [&](const auto& each) {
        const bool gone = !contains(paths, each.first);
        if (gone) pictures_.cancel(each.second);
        return gone;
    });
    for (const std::string& path : paths) {
        if (kept_.contains(path) || waiting_.contains(path)) continue;
        const platform::PictureRequest request{.source = {.path = path}, .priority = platform::PicturePriority::nearby};
        waiting_[path] =
            pictures_.request(request, [this, path](const platform::Picture& picture) { take(path, picture); });
    }
}

const platform::Picture* DecodedPictures::find(const std::string& path) const {
    const auto kept = kept_.find(path);
    const bool holds =
        kept != kept_.end() && kept->second.stamp && kept->second.stamp == files::stamp_through_links(path);
    return holds ? &kept->second.picture : nullptr;
}

void DecodedPictures::take(const std::string& path, const platform::Picture& picture) {
    waiting_.erase(path);
    kept_.erase(path);
    std::size_t total = bytes_of(picture);
    for (const auto& each : kept_) total += bytes_of(each.second.picture);
    if (picture.state == platform::PictureState::failed || total > most_bytes) return;
    kept_[path] = {picture, files::stamp_through_links(path)};
}

}  // namespace quill::viewer
