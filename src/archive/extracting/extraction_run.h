#pragma once

#include "archive/extracting/extraction.h"
#include "archive/extracting/work_queue.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace quill::zip {

/// Adds a problem to a member's result.
void report(MemberResult& result, ProblemKind kind, std::string text = {});

/// Passes on results in their order, whatever the order in which they arrive. Few should have to wait.
class OrderedResults {
  public:
    explicit OrderedResults(const TakeResult& take) : take_(take) {}

    void put(std::size_t place, MemberResult result);
    /// Passes on waiting results, and `missing(place)` for each of the `count` places without one.
    template <class Missing>
    void finish(std::size_t count, Missing&& missing) {
        while (next_ < count) put(next_, missing(next_));
    }

  private:
    const TakeResult& take_;
    std::mutex mutex_;
    std::map<std::size_t, MemberResult> waiting_;
    std::size_t next_ = 0;
};

/// One run over members of an archive: the state that its threads share.
class ExtractionRun {
  public:
    ExtractionRun(const Archive& archive, const std::vector<std::size_t>& wanted, const ExtractOptions& options);

    /// Asks about members that expand to more than the limits allow; fails with `limit` if the answer is no.
    Status agree_on_size();

    /// Runs `work(reader, result)` for each requested member, in several threads; `make_work()` gives each thread its
    /// own.
    template <class MakeWork>
    void go(const TakeResult& take_result, MakeWork&& make_work) {
        OrderedResults results(take_result);
        const auto make_worker = [&] {
            return [this, &results, reader = std::make_shared<MemberReader>(archive_, options_.password),
                    work = make_work()](std::size_t turn) mutable {
                const std::size_t place = order_[turn];
                MemberResult result;
                result.member = wanted_[place];
                if (allowed(place, result)) work(*reader, result);
                results.put(place, std::move(result));
                ++members_done_;
            };
        };
        share_work(wanted_.size(), threads(), make_worker, [this] { return look(); });
        results.finish(wanted_.size(), [&](std::size_t place) {
            MemberResult result;
            result.member = wanted_[place];
            report_stop(result);
            return result;
        });
    }

    /// Counts output bytes; returns false if the run must stop, also if they exceed the limits.
    bool take(std::uint64_t bytes);
    bool goes_on() const { return stop_ == Stop::none; }

    /// Copies the reader's findings into the result.
    void record(Content content, MemberResult& result) const;

  private:
    enum class Stop : std::uint8_t { none, cancelled, limit };

    const Member& member(std::size_t place) const { return archive_.members()[wanted_[place]]; }
    void put_large_ones_first();
    unsigned threads() const;
    bool allowed(std::size_t place, MemberResult& result) const;
    void report_stop(MemberResult& result) const;
    bool look();

    const Archive& archive_;
    const std::vector<std::size_t>& wanted_;
    const ExtractOptions& options_;
    Limits limits_;
    std::vector<std::uint32_t> order_;  // places in `wanted_`
    std::uint64_t stated_ = 0;
    std::uint64_t expected_ = 0;  // the plausible part of `stated_`
    std::atomic<std::uint64_t> left_{0};
    std::atomic<std::uint64_t> bytes_done_{0};
    std::atomic<std::size_t> members_done_{0};
    std::atomic<Stop> stop_{Stop::none};
};

}  // namespace quill::zip
