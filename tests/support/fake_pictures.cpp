#include "support/fake_pictures.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace quill::tests {

void FakePictures::set(std::string path, platform::Picture picture, std::uint64_t offset, std::size_t index) {
    table_[{std::move(path), offset, index}] = std::move(picture);
}

std::vector<FakePictures::Waiting>::iterator FakePictures::find(Ticket ticket) {
    return std::find_if(waiting.begin(), waiting.end(), [&](const Waiting& each) { return each.ticket == ticket; });
}

FakePictures::Ticket FakePictures::request(const platform::PictureRequest& request, Ready ready) {
    log.push_back(request);
    waiting.push_back({++last_ticket_, request, std::move(ready)});
    return last_ticket_;
}

void FakePictures::cancel(Ticket ticket) {
    const auto found = find(ticket);
    if (found == waiting.end()) return;
    waiting.erase(found);
    ++cancelled;
}

void FakePictures::prioritise(Ticket ticket, platform::PicturePriority priority) {
    const auto found = find(ticket);
    if (found != waiting.end()) found->request.priority = priority;
}

platform::Picture FakePictures::answer(const platform::PictureRequest& request) const {
    const auto found = table_.find({request.source.path, request.source.offset, request.index});
    if (found != table_.end()) return found->second;
    platform::Picture none;
    none.reason = "the file is not a picture";
    return none;
}

bool FakePictures::answer_one() {
    const auto next = std::min_element(waiting.begin(), waiting.end(), [](const Waiting& a, const Waiting& b) {
        return a.request.priority < b.request.priority;
    });
    if (next == waiting.end()) return false;
    const Waiting taken = std::move(*next);
    waiting.erase(next);
    taken.ready(answer(taken.request));
    return true;
}

std::size_t FakePictures::answer_all() {
    std::size_t answered = 0;
    while (answer_one()) ++answered;
    return answered;
}

platform::Picture plain_picture(int width, int height, std::uint32_t color) {
    const auto stride = static_cast<std::size_t>(width) * sizeof(color);
    const auto pixels = std::make_shared<std::vector<std::uint32_t>>(
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height), color);
    platform::Picture picture;
    picture.pixels = {{width, height}, stride, {pixels, reinterpret_cast<const std::uint8_t*>(pixels->data())}};
    picture.original = picture.pixels.size;
    picture.count = 1;
    picture.format = "png";
    picture.state = platform::PictureState::whole;
    picture.decoded_percent = 100;
    return picture;
}

}  // namespace quill::tests
