#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quill::zip {

/// Does `count` pieces of work in up to `threads` threads while the caller's thread watches.
///
/// `make_worker()` is called once in each thread and returns a function that does piece number i. `look()` is called in
/// the caller's thread about twenty times a second, and once more at the end; if it returns false, no further piece
/// begins.
template <class MakeWorker, class Look>
void share_work(std::size_t count, unsigned threads, MakeWorker&& make_worker, Look&& look) {
    std::atomic<std::size_t> next{0};
    std::atomic<bool> stopped{false};
    const auto work = [&] {
        auto worker = make_worker();
        for (std::size_t i = next++; i < count && !stopped; i = next++) worker(i);
    };
    std::mutex mutex;
    std::condition_variable ended;
    unsigned running = threads;
    std::vector<std::jthread> team;
    for (unsigned t = 0; t < threads; ++t) {
        team.emplace_back([&] {
            work();
            const std::lock_guard lock(mutex);
            --running;
            ended.notify_one();
        });
    }
    constexpr std::chrono::milliseconds pause(50);
    std::unique_lock lock(mutex);
    for (bool done = false; !done;) {
        done = ended.wait_for(lock, pause, [&] { return running == 0; });
        lock.unlock();
        if (!look()) stopped = true;
        lock.lock();
    }
}

}  // namespace quill::zip
