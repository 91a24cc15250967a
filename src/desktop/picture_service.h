#pragma once

#include "desktop/event_loop.h"
#include "platform/pictures.h"

#include <QObject>
#include <QThreadPool>

#include <map>
#include <vector>

namespace quill::desktop {

/// Decodes pictures beside the interface, those that are seen first.
class PictureService final : public QObject, public platform::Pictures {
  public:
    explicit PictureService(EventLoop& events);
    ~PictureService() override;

    Ticket request(const platform::PictureRequest& request, Ready ready) override;
    void cancel(Ticket ticket) override;
    void prioritise(Ticket ticket, platform::PicturePriority priority) override;
    std::string confinement() override;

  private:
    struct Waiting {
        platform::PictureRequest request;
        Ready ready;
        bool started = false;
    };

    void start_more();
    void deliver(Ticket ticket, const platform::Picture& picture);

    EventLoop& events_;
    std::map<Ticket, Waiting> waiting_;
    Ticket last_ticket_ = 0;
    int running_ = 0;
    QThreadPool threads_;
};

}  // namespace quill::desktop
