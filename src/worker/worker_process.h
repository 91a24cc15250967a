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

/// Returns the path of the worker's program beside the running one; empty where it is missing.
std::string find_worker();

/// A running picture worker, ended with this object. It decodes one picture at a time.
class WorkerProcess {
  public:
    /// Starts `program`; what it says first comes as a Hello. Fails with the system's reason.
    static Result<WorkerProcess> start(const std::string& program);

    WorkerProcess(WorkerProcess&& other) noexcept;
    WorkerProcess& operator=(WorkerProcess&& other) noexcept;
    ~WorkerProcess();

    /// The end of the line that can be polled for answers.
    int line() const { return line_.get(); }
    pid_t process() const { return process_; }

    /// Sends a request for a picture in `file`. False where the worker is gone.
    bool send(const Request& request, int file) const;

    /// Nothing has come yet, or the worker has ended or sent what makes no sense; in both of the latter cases it is of
    /// no more use.
    enum class Nothing { yet, any_more };
    /// A picture, by the number of its request.
    struct Reply {
        std::uint64_t id = 0;
        platform::Picture picture;
    };
    /// Takes what has come from the worker, without waiting. Believes nothing: pixels are only given out in memory that
    /// is sealed and large enough.
    std::variant<Nothing, Hello, Reply> receive() const;

  private:
    WorkerProcess(pid_t process, files::Descriptor line) : process_(process), line_(std::move(line)) {}

    pid_t process_ = -1;
    files::Descriptor line_;
};

/// What a picture is decoded from.
struct OpenSource {
    files::Descriptor file;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// Opens the bytes of a source. Fails with the system's reason, and for a range that is not in the file.
Result<OpenSource> open_source(const platform::PictureSource& source);

/// Returns the answer for a picture that could not be decoded, and why.
platform::Picture failed_picture(std::string reason);

}  // namespace quill::worker
