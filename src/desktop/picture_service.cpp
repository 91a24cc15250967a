#include "desktop/picture_service.h"

#include "desktop/picture_reading.h"
#include "files/mapped_file.h"

#include <QImage>
#include <QMetaObject>

#include <algorithm>
#include <memory>
#include <utility>

namespace quill::desktop {
namespace {

/// Returns the image's pixels; they live as long as the last copy of the answer.
platform::Pixels pixels_of(const QImage& image) {
    const auto kept = std::make_shared<QImage>(image.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    return {{kept->width(), kept->height()},
            static_cast<std::size_t>(kept->bytesPerLine()),
            {kept, reinterpret_cast<const std::uint8_t*>(kept->constBits())}};
}

platform::Picture decode(std::string_view bytes, QSize bounds) {
    platform::Picture picture;
    picture.reason = "the file is not a picture that can be shown";
    const QImage image = read_picture(bytes, bounds);
    if (image.isNull()) return picture;
    picture.pixels = pixels_of(image);
    picture.count = 1;
    picture.state = platform::PictureState::whole;
    picture.decoded_percent = 100;
    picture.reason.clear();
    return picture;
}

platform::Picture decode(const platform::PictureRequest& request) {
    constexpr int any = 1 << 24;
    const QSize bounds =
        request.bounds.width > 0 ? QSize(request.bounds.width, request.bounds.height) : QSize(any, any);
    if (request.source.bytes != nullptr) return decode(*request.source.bytes, bounds);
    const auto file = files::MappedFile::open(request.source.path);
    if (file && request.source.offset <= file->bytes().size()) {
        return decode(file->bytes().substr(request.source.offset, request.source.length), bounds);
    }
    platform::Picture none;
    none.reason = "the file can't be read";
    return none;
}

}  // namespace

PictureService::PictureService(EventLoop& events) : events_(events) {}

PictureService::~PictureService() {
    waiting_.clear();
    threads_.clear();
    threads_.waitForDone();
}

PictureService::Ticket PictureService::request(const platform::PictureRequest& request, Ready ready) {
    waiting_[++last_ticket_] = {request, std::move(ready)};
    start_more();
    return last_ticket_;
}

void PictureService::cancel(Ticket ticket) {
    waiting_.erase(ticket);
}

void PictureService::prioritise(Ticket ticket, platform::PicturePriority priority) {
    const auto found = waiting_.find(ticket);
    if (found != waiting_.end()) found->second.request.priority = priority;
}

std::string PictureService::confinement() {
    return "Pictures are decoded in the program itself.";
}

void PictureService::start_more() {
    while (running_ < threads_.maxThreadCount()) {
        auto next = waiting_.end();
        for (auto each = waiting_.begin(); each != waiting_.end(); ++each) {
            if (each->second.started) continue;
            if (next == waiting_.end() || each->second.request.priority < next->second.request.priority) next = each;
        }
        if (next == waiting_.end()) return;
        next->second.started = true;
        ++running_;
        threads_.start([this, ticket = next->first, request = next->second.request] {
            QMetaObject::invokeMethod(
                this, [this, ticket, picture = decode(request)] { deliver(ticket, picture); }, Qt::QueuedConnection);
        });
    }
}

void PictureService::deliver(Ticket ticket, const platform::Picture& picture) {
    --running_;
    const auto found = waiting_.find(ticket);
    if (found != waiting_.end()) {
        const Ready ready = std::move(found->second.ready);
        waiting_.erase(found);
        const auto answer = [ready, picture] { ready(picture); };
        if (events_.breathing()) {
            events_.hand_in_later(answer);
        } else {
            events_.hand_in(answer);
        }
    }
    start_more();
}

}  // namespace quill::desktop
