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

/// Decodes pictures in worker processes, one for each core, those that are seen first. Workers start with the first
/// request. One that ends or takes too long costs the picture that it was at; the next picture gets a new one.
/// Thumbnails come from the user's cache, whose files are decoded like any other, and go there.
class PictureService final : public QObject, public platform::Pictures {
  public:
    /// `thumbnails` is the directory of the cache; an empty one keeps nothing.
    explicit PictureService(EventLoop& events, std::string program = worker::find_worker(),
                            std::string thumbnails = thumbnails::user_thumbnails());
    ~PictureService() override;

    Ticket request(const platform::PictureRequest& request, Ready ready) override;
    void cancel(Ticket ticket) override;
    void prioritise(Ticket ticket, platform::PicturePriority priority) override;
    std::string confinement() override;

    /// How many workers are alive.
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
        Ticket running = 0;              ///< what it decodes
        platform::PictureSource source;  ///< of its last request
        std::uint64_t source_number = 0;
        unsigned pictures = 0;  ///< that it has been sent
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
    std::map<Ticket, Waiting> waiting_;                             ///< all that are not answered
    std::set<std::pair<platform::PicturePriority, Ticket>> queue_;  ///< those of them that no worker has, in order
    std::vector<Seat> seats_;
    Ticket last_ticket_ = 0;
    std::uint64_t last_source_ = 0;
    unsigned failed_starts_ = 0;  ///< of workers, one after the other
};

}  // namespace quill::desktop
