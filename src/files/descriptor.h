#pragma once

#include <unistd.h>
#include <utility>

namespace quill::files {

/// An open file descriptor, closed with this object.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor() {
        if (is_open()) ::close(fd_);
    }

    int get() const { return fd_; }
    bool is_open() const { return fd_ >= 0; }

    /// Closes it now. Returns false, with errno set, if the system could not store what was written.
    bool close() { return !is_open() || ::close(std::exchange(fd_, -1)) == 0; }

  private:
    int fd_ = -1;
};

}  // namespace quill::files
