#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace quill::archive {

/// The last bytes of an output, to copy from, and the pending part of a copy. Bytes before the beginning are zeros.
/// `Size` is a power of two.
template <std::size_t Size>
class Window {
  public:
    /// Begins a step that writes to `room`.
    void attach(std::span<char> room) {
        room_ = room;
        written_ = 0;
    }

    /// Continues a pending copy; returns true if nothing is pending and there is room.
    bool drain() {
        while (waiting_ > 0 && written_ < room_.size()) copy_run();
        return written_ < room_.size();
    }

    /// Writes one byte. REQUIRES: `drain` has returned true since the last call of `put` or `copy`.
    void put(unsigned char byte) {
        ring_[total_++ % Size] = static_cast<char>(byte);
        room_[written_++] = static_cast<char>(byte);
    }

    /// Adds a pending copy of `length` bytes from `distance` bytes before the end, 1 to `Size`.
    void copy(std::size_t distance, std::size_t length) {
        distance_ = distance;
        waiting_ = length;
    }

    bool waits() const { return waiting_ > 0; }
    std::size_t written() const { return written_; }
    /// Returns the bytes of all steps.
    std::uint64_t total() const { return total_; }

  private:
    /// Copies contiguous bytes that are already written.
    void copy_run() {
        const std::size_t to = total_ % Size, from = (total_ - distance_) % Size;
        const std::size_t size = std::min({waiting_, room_.size() - written_, distance_, Size - to, Size - from});
        std::memmove(&ring_[to], &ring_[from], size);
        std::memcpy(&room_[written_], &ring_[to], size);
        total_ += size;
        written_ += size;
        waiting_ -= size;
    }

    std::unique_ptr<char[]> ring_ = std::make_unique<char[]>(Size);
    std::span<char> room_;
    std::size_t written_ = 0;
    std::uint64_t total_ = 0;
    std::size_t distance_ = 1;
    std::size_t waiting_ = 0;
};

}  // namespace quill::archive
