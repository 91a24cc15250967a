#pragma once

#include "files/descriptor.h"
#include "platform/pictures.h"
#include "text/result.h"
#include "worker/message.h"

#include <optional>
#include <string>
#include <sys/types.h>
#include <variant>

namespace quill::worker {

/// Returns the path of the worker's program beside the running one; empty if it is missing.
std::string find_worker();

/// A running picture worker, ended with this object. It decodes one picture at a time.
class WorkerProcess {
  public:
    /// Starts `program`; its first message is a Hello. Fails with the system's reason.
    static Result<WorkerProcess> start(const std::string& program);

    WorkerProcess(WorkerProcess&& other) noexcept;
    WorkerProcess& operator=(WorkerProcess&& other) noexcept;
    ~WorkerProcess();

    /// Returns the end of the line that can be polled for answers.
    int line() const { return line_.get(); }
    pid_t process() const { return process_; }

    /// Sends a request for a picture in `file`. Returns false if the worker has ended.
    bool send(const Request& request, int file) const;

    /// Nothing has arrived yet, or the worker has ended or sent an invalid message; after those it can't be used any
    /// more.
    enum class Nothing { yet, any_more };
    /// A picture and the number of its request.
    struct Reply {
        std::uint64_t id = 0;
        platform::Picture picture;
    };
    /// Receives a message from the worker, without waiting. Trusts nothing: passes on pixels only in memory that is
    /// sealed and large enough.
    std::variant<Nothing, Hello, Reply> receive() const;

  private:
    WorkerProcess(pid_t process, files::Descriptor line) : process_(process), line_(std::move(line)) {}

    pid_t process_ = -1;
    files::Descriptor line_;
};

/// The open bytes of a picture.
struct OpenSource {
    files::Descriptor file;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// Opens the bytes of a source. Fails with the system's reason, and for a range outside the file.
Result<OpenSource> open_source(const platform::PictureSource& source);

/// Returns the answer for a picture that could not be decoded, with the reason.
platform::Picture failed_picture(std::string reason);

}  // namespace quill::worker
