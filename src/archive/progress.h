#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

namespace quill::zip {

/// How much of a run is done.
struct Progress {
    std::size_t members_done = 0;
    std::size_t members = 0;
    std::uint64_t bytes_done = 0;
    std::uint64_t bytes = 0;  ///< as stated by the members' headers or the files
};

/// Is called periodically with the progress, in the thread that began the run; returns false to cancel it. May be
/// empty.
using Watch = std::function<bool(const Progress&)>;

/// Counts the bytes of a run and calls its watch about twenty times a second.
class WatchKeeper {
  public:
    explicit WatchKeeper(Watch watch) : watch_(std::move(watch)) {}

    /// Adds bytes that remain to be counted.
    void expect(std::uint64_t bytes) { progress_.bytes += bytes; }
    /// Counts bytes; returns false once the watch has returned false.
    bool count(std::uint64_t bytes);
    bool goes_on() { return count(0); }

  private:
    Watch watch_;
    Progress progress_;
    std::chrono::steady_clock::time_point next_;
    bool stopped_ = false;
};

/// Calls `f` with pieces of `bytes`, each counted by the keeper. Returns false as soon as one of them does.
template <class F>
bool in_pieces(std::string_view bytes, WatchKeeper& keeper, F&& f) {
    constexpr std::size_t piece = 1U << 20U;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        const std::string_view part = bytes.substr(0, piece);
        if (!f(part) || !keeper.count(part.size())) return false;
    }
    return true;
}

}  // namespace quill::zip
