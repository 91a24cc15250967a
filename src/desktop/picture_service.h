#pragma once

#include "desktop/event_loop.h"
#include "platform/pictures.h"
#include "thumbnails/thumbnail_cache.h"
#include "worker/worker_process.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quill::desktop {

/// Decodes pictures in worker processes, one for each core, visible ones first. Workers start with the first request.
/// If one ends or takes too long, its current picture fails; the next picture gets a new one. Thumbnails come from the
/// user's cache, whose files are decoded like any other, and are stored there.
class PictureService final : public QObject, public platform::Pictures {
  public:
    /// `thumbnails` is the directory of the cache; an empty one stores nothing.
    explicit PictureService(EventLoop& events, std::string program = worker::find_worker(),
                            std::string thumbnails = thumbnails::user_thumbnails());
    ~PictureService() override;

    Ticket request(const platform::PictureRequest& request, Ready ready) override;
    void cancel(Ticket ticket) override;
    void prioritise(Ticket ticket, platform::PicturePriority priority) override;
    std::string confinement() override;

    /// Returns the number of running workers.
    std::size_t workers() const;

  private:
    struct Waiting {
        platform::PictureRequest request;
        Ready ready;
        thumbnails::ThumbnailCache::Subject subject = {};  ///< of a thumbnail; an empty path for other pictures
        std::optional<thumbnails::ThumbnailCache::Kept> kept = {};
    };
    /// A place for a worker.
    struct Seat {
        std::optional<worker::WorkerProcess> process;
        std::unique_ptr<QSocketNotifier> answers;
        std::unique_ptr<QTimer> deadline;
        std::optional<worker::Hello> hello;
        Ticket running = 0;              ///< the request that it decodes
        platform::PictureSource source;  ///< of its last request
        std::uint64_t source_number = 0;
        unsigned pictures = 0;  ///< number sent to it
    };

    void start_more();
    bool seat(Seat& seat);
    Seat* idle_seat(const platform::PictureRequest& request);
    void send(Seat& seat, Ticket ticket);
    void receive(Seat& seat);
    void give_up(Seat& seat, const char* reason);
    void dismiss(Seat& seat);
    void take_reply(Ticket ticket, platform::Picture picture);
    void answer(Ticket ticket, const platform::Picture& picture);
    void answer_later(Ticket ticket, std::string reason);

    EventLoop& events_;
    std::string program_;
    thumbnails::ThumbnailCache cache_;
    std::map<Ticket, Waiting> waiting_;                             ///< all unanswered requests
    std::set<std::pair<platform::PicturePriority, Ticket>> queue_;  ///< those of them not sent to a worker, in order
    std::vector<Seat> seats_;
    Ticket last_ticket_ = 0;
    std::uint64_t last_source_ = 0;
    unsigned failed_starts_ = 0;  ///< of workers, in a row
};

}  // namespace quill::desktop
