#include "desktop/picture_service.h"

#include "files/file_stamp.h"

#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <poll.h>
#include <variant>

namespace quill::desktop {
namespace {

constexpr int longest_decoding = 20'000;    // milliseconds
constexpr unsigned most_pictures = 2'000;   // of one worker
constexpr unsigned most_failed_starts = 3;  // after these, pictures fail without another attempt

constexpr const char* sentence_on_sandbox =
    "Pictures are decoded in a process of their own that can't open files, use the network or start programs.";
constexpr const char* sentence_on_process =
    "Pictures are decoded in a process of their own. This system can't keep that process from opening files.";
constexpr const char* sentence_on_nothing = "Pictures can't be shown: the decoder can't be started.";

/// Returns the file of the requested thumbnail; an empty path if it must not come from the cache.
thumbnails::ThumbnailCache::Subject subject_of(const platform::PictureRequest& request) {
    const auto stamp = request.thumbnail ? files::stamp_through_links(request.source.path) : std::nullopt;
    if (!stamp || request.source.bytes || request.bounds.width != request.bounds.height) return {};
    return {request.source.path, stamp->modified, request.bounds.width};
}

}  // namespace

PictureService::PictureService(EventLoop& events, std::string program, std::string thumbnails)
    : events_(events),
      program_(std::move(program)),
      cache_(std::move(thumbnails)),
      seats_(static_cast<std::size_t>(std::max(QThread::idealThreadCount(), 1))) {}

PictureService::~PictureService() {
    for (Seat& seat : seats_) dismiss(seat);
}

std::size_t PictureService::workers() const {
    return static_cast<std::size_t>(
        std::count_if(seats_.begin(), seats_.end(), [](const Seat& seat) { return seat.process.has_value(); }));
}

PictureService::Ticket PictureService::request(const platform::PictureRequest& request, Ready ready) {
    const Ticket ticket = ++last_ticket_;
    waiting_[ticket] = {.request = request, .ready = std::move(ready), .subject = subject_of(request)};
    queue_.emplace(request.priority, ticket);
    start_more();
    return ticket;
}

void PictureService::cancel(Ticket ticket) {
    const auto found = waiting_.find(ticket);
    if (found == waiting_.end()) return;
    queue_.erase({found->second.request.priority, ticket});
    waiting_.erase(found);
}

void PictureService::prioritise(Ticket ticket, platform::PicturePriority priority) {
    const auto found = waiting_.find(ticket);
    if (found == waiting_.end()) return;
    platform::PicturePriority& old = found->second.request.priority;
    if (queue_.erase({old, ticket}) != 0) queue_.emplace(priority, ticket);
    old = priority;
}

/// Returns a seat that can take the request: the one that has its animation open, else any idle one.
PictureService::Seat* PictureService::idle_seat(const platform::PictureRequest& request) {
    Seat* found = nullptr;
    for (Seat& each : seats_) {
        if (each.running != 0) continue;
        if (each.process && each.source == request.source) return &each;
        if (found == nullptr || (each.process && !found->process)) found = &each;
    }
    return found;
}

void PictureService::start_more() {
    while (!queue_.empty()) {
        const Ticket ticket = queue_.begin()->second;
        Seat* free = idle_seat(waiting_.at(ticket).request);
        if (free == nullptr) return;
        queue_.erase(queue_.begin());
        if (seat(*free)) {
            send(*free, ticket);
        } else {
            answer_later(ticket, "the picture decoder can't be started");
        }
    }
}

/// Starts a worker in the seat if there is none. Returns true if there is one.
bool PictureService::seat(Seat& seat) {
    if (seat.process) return true;
    if (program_.empty() || failed_starts_ >= most_failed_starts) return false;
    Result<worker::WorkerProcess> started = worker::WorkerProcess::start(program_);
    if (!started) {
        ++failed_starts_;
        return false;
    }
    seat.process = *std::move(started);
    seat.answers = std::make_unique<QSocketNotifier>(seat.process->line(), QSocketNotifier::Read);
    connect(seat.answers.get(), &QSocketNotifier::activated, this, [this, &seat] { receive(seat); });
    seat.deadline = std::make_unique<QTimer>();
    seat.deadline->setSingleShot(true);
    connect(seat.deadline.get(), &QTimer::timeout, this,
            [this, &seat] { give_up(seat, "the picture takes too long to decode"); });
    return true;
}

void PictureService::send(Seat& seat, Ticket ticket) {
    Waiting& waiting = waiting_.at(ticket);
    const platform::PictureRequest& wanted = waiting.request;
    if (!waiting.subject.path.empty()) waiting.kept = cache_.find(waiting.subject);
    if (waiting.kept && waiting.kept->thumbnail.empty()) return answer_later(ticket, waiting.kept->reason);
    const auto source =
        worker::open_source(waiting.kept ? platform::PictureSource{waiting.kept->thumbnail} : wanted.source);
    if (!source) return answer_later(ticket, source.error().text);
    if (!(seat.source == wanted.source) || wanted.index == 0) seat.source_number = ++last_source_;
    seat.source = wanted.source;
    worker::Request request;
    request.id = ticket;
    request.source = seat.source_number;
    request.offset = source->offset;
    request.length = source->length;
    request.width = wanted.bounds.width;
    request.height = wanted.bounds.height;
    request.index = static_cast<std::uint32_t>(wanted.index);
    seat.running = ticket;
    ++seat.pictures;
    seat.deadline->start(longest_decoding);
    // A broken line reports the failure when it is read.
    static_cast<void>(seat.process->send(request, source->file.get()));
}

void PictureService::receive(Seat& seat) {
    const auto message = seat.process->receive();
    if (const auto* nothing = std::get_if<worker::WorkerProcess::Nothing>(&message)) {
        if (*nothing == worker::WorkerProcess::Nothing::any_more) give_up(seat, "the picture made the decoder fail");
        return;
    }
    if (const auto* hello = std::get_if<worker::Hello>(&message)) {
        seat.hello = *hello;
        failed_starts_ = 0;
        return;
    }
    const auto& reply = std::get<worker::WorkerProcess::Reply>(message);
    if (reply.id != seat.running) return give_up(seat, "the picture made the decoder fail");
    seat.running = 0;
    seat.deadline->stop();
    if (seat.pictures >= most_pictures) dismiss(seat);
    take_reply(reply.id, reply.picture);
}

/// Answers with a picture from a worker. Stores a thumbnail in the cache; if the cached file can't be read, decodes the
/// picture itself.
void PictureService::take_reply(Ticket ticket, platform::Picture picture) {
    const auto found = waiting_.find(ticket);
    if (found != waiting_.end() && !found->second.subject.path.empty()) {
        Waiting& waiting = found->second;
        if (waiting.kept && picture.state != platform::PictureState::whole) {
            waiting.subject = {};
            waiting.kept.reset();
            queue_.emplace(waiting.request.priority, ticket);
            return start_more();
        }
        if (waiting.kept) {
            picture.original = waiting.kept->original;
        } else {
            QThreadPool::globalInstance()->start(
                [cache = cache_, subject = waiting.subject, picture] { cache.keep(subject, picture); });
        }
    }
    start_more();
    answer(ticket, picture);
}

/// Ends the seat's worker; its current picture fails for `reason`.
void PictureService::give_up(Seat& seat, const char* reason) {
    const Ticket ticket = seat.running;
    if (!seat.hello) ++failed_starts_;
    dismiss(seat);
    start_more();
    if (ticket != 0) answer(ticket, worker::failed_picture(reason));
}

void PictureService::dismiss(Seat& seat) {
    // One of these may be the caller.
    if (seat.answers) {
        seat.answers->setEnabled(false);
        seat.answers.release()->deleteLater();
    }
    if (seat.deadline) {
        seat.deadline->stop();
        seat.deadline.release()->deleteLater();
    }
    seat = Seat();
}

void PictureService::answer_later(Ticket ticket, std::string reason) {
    QMetaObject::invokeMethod(
        this, [this, ticket, reason = std::move(reason)] { answer(ticket, worker::failed_picture(reason)); },
        Qt::QueuedConnection);
}

void PictureService::answer(Ticket ticket, const platform::Picture& picture) {
    const auto found = waiting_.find(ticket);
    if (found == waiting_.end()) return;
    const Ready ready = std::move(found->second.ready);
    waiting_.erase(found);
    const auto event = [ready, picture] {
        if (ready) ready(picture);
    };
    if (events_.breathing()) {
        events_.hand_in_later(event);
    } else {
        events_.hand_in(event);
    }
}

std::string PictureService::confinement() {
    constexpr int patience = 2'000;  // milliseconds
    Seat& first = seats_.front();
    if (!seat(first)) return sentence_on_nothing;
    pollfd line{first.process->line(), POLLIN, 0};
    if (!first.hello && poll(&line, 1, patience) > 0) receive(first);
    if (!first.hello) return sentence_on_nothing;
    return first.hello->has_seccomp != 0 ? sentence_on_sandbox : sentence_on_process;
}

}  // namespace quill::desktop
