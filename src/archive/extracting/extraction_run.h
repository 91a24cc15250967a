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

/// Hands results on in their order, whatever the order in which they are put in. Few should have to wait.
class OrderedResults {
  public:
    explicit OrderedResults(const TakeResult& take) : take_(take) {}

    void put(std::size_t place, MemberResult result);
    /// Hands on what waits, and `missing(place)` for each of the `count` places that nothing was put in.
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

/// One run over members of an archive: what its threads share.
class ExtractionRun {
  public:
    ExtractionRun(const Archive& archive, const std::vector<std::size_t>& wanted, const ExtractOptions& options);

    /// Asks about members that come to more than the limits allow; fails with `limit` where the answer is no.
    Status agree_on_size();

    /// Does `work(reader, result)` for each wanted member, in several threads; `make_work()` gives each its own.
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

    /// Counts bytes that come out; false where the run is to stop, also because they are more than the limits allow.
    bool take(std::uint64_t bytes);
    bool goes_on() const { return stop_ == Stop::none; }

    /// Puts what the reader says into the result.
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
    std::uint64_t expected_ = 0;  // the part of `stated_` that can be true
    std::atomic<std::uint64_t> left_{0};
    std::atomic<std::uint64_t> bytes_done_{0};
    std::atomic<std::size_t> members_done_{0};
    std::atomic<Stop> stop_{Stop::none};
};

}  // namespace quill::zip
