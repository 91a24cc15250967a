#include "worker/waiting_decoder.h"

#include <poll.h>

namespace quill::worker {

platform::Picture WaitingDecoder::give_up(const char* reason) {
    process_.reset();
    return failed_picture(reason);
}

platform::Picture WaitingDecoder::decode(const platform::PictureSource& source, platform::PictureSize bounds,
                                         bool keeps_colors) {
    const Result<OpenSource> open = open_source(source);
    if (!open) return failed_picture(open.error().text);
    if (!process_) {
        Result<WorkerProcess> started = WorkerProcess::start(program_);
        if (!started) return failed_picture("the picture decoder can't be started");
        process_.emplace(*std::move(started));
    }
    Request request;
    request.offset = open->offset;
    request.length = open->length;
    request.width = bounds.width;
    request.height = bounds.height;
    request.keeps_colors = keeps_colors ? 1 : 0;
    if (!process_->send(request, open->file.get())) return give_up("the picture decoder has ended");
    return wait();
}

platform::Picture WaitingDecoder::wait() {
    constexpr int patience = 20'000;  // milliseconds
    for (;;) {
        pollfd line{process_->line(), POLLIN, 0};
        if (poll(&line, 1, patience) == 0) return give_up("the picture takes too long to decode");
        const auto message = process_->receive();
        if (const auto* reply = std::get_if<WorkerProcess::Reply>(&message)) return reply->picture;
        const auto* nothing = std::get_if<WorkerProcess::Nothing>(&message);
        if (nothing != nullptr && *nothing == WorkerProcess::Nothing::any_more) {
            return give_up("the picture made the decoder fail");
        }
    }
}

}  // namespace quill::worker
