#include "archive/extracting/extraction_run.h"

#include "archive/container/format.h"
#include "text/count.h"

#include <iterator>
#include <limits>
#include <numeric>
#include <thread>
#include <utility>

namespace quill::zip {
namespace {

constexpr std::uint64_t large_member = 8U << 20U;
constexpr std::size_t most_large_ones_first = 256;
constexpr std::uint64_t worth_a_second_thread = large_member / 64;
constexpr unsigned most_threads = 16;
constexpr std::uint64_t deflate_most_ratio = 1032;

std::uint64_t sum(std::uint64_t a, std::uint64_t b) {
    return a + std::min(b, std::numeric_limits<std::uint64_t>::max() - a);
}

/// Returns the plausible part of a member's stated size.
std::uint64_t expected_size(const Member& member) {
    const std::uint64_t size = member.uncompressed_size, packed = member.compressed_size;
    const std::uint16_t method = member.content_method();
    if (method == method_stored) return std::min(size, packed);
    const bool too_good = method == method_deflated && packed < size / deflate_most_ratio;
    return too_good ? packed * deflate_most_ratio : size;
}

}  // namespace

void report(MemberResult& result, ProblemKind kind, std::string text) {
    result.problems.push_back({kind, 0, {}, std::move(text)});
}

void OrderedResults::put(std::size_t place, MemberResult result) {
    const std::lock_guard lock(mutex_);
    waiting_.emplace(place, std::move(result));
    while (!waiting_.empty() && waiting_.begin()->first == next_) {
        take_(std::move(waiting_.extract(waiting_.begin()).mapped()));
        ++next_;
    }
}

std::string Expansion::text() const {
    return text::grouped(bytes) + " bytes, " + text::grouped(bytes / std::max(archive_size, std::uint64_t{1})) +
           " times the size of the archive";
}

Limits Limits::lifted() {
    constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
    return {std::numeric_limits<std::size_t>::max(), all, all, all, true};
}

std::uint64_t Limits::bytes_for(std::uint64_t archive_size) const {
    const bool huge = archive_size != 0 && most_ratio > std::numeric_limits<std::uint64_t>::max() / archive_size;
    return std::min(most_bytes, std::max(free_bytes, huge ? most_bytes : archive_size * most_ratio));
}

ExtractionRun::ExtractionRun(const Archive& archive, const std::vector<std::size_t>& wanted,
                             const ExtractOptions& options)
    : archive_(archive), wanted_(wanted), options_(options), limits_(options.limits) {
    for (std::size_t place = 0; place < wanted.size() && place < limits_.most_members; ++place) {
        const Member& m = member(place);
        if (m.is_directory() || (m.overlaps && !limits_.overlaps)) continue;
        stated_ = sum(stated_, m.uncompressed_size);
        expected_ = sum(expected_, expected_size(m));
    }
    put_large_ones_first();
    left_ = limits_.bytes_for(archive.bytes().size());
}

void ExtractionRun::put_large_ones_first() {
    order_.resize(wanted_.size());
    std::iota(order_.begin(), order_.end(), 0U);
    std::size_t large = 0;
    std::stable_partition(order_.begin(), order_.end(), [&](std::uint32_t place) {
        return large < most_large_ones_first && member(place).uncompressed_size >= large_member && ++large != 0;
    });
}

Status ExtractionRun::agree_on_size() {
    const Expansion expansion{expected_, archive_.bytes().size()};
    if (expected_ <= left_) return Done{};
    if (!options_.confirm_large || !options_.confirm_large(expansion)) {
        return Error{ErrorCode::limit, 0, "it unpacks to " + expansion.text() + ", as an archive bomb does"};
    }
    left_ = std::numeric_limits<std::uint64_t>::max();
    return Done{};
}

unsigned ExtractionRun::threads() const {
    if (wanted_.size() < 2 || stated_ < worth_a_second_thread) return 1;
    const unsigned most =
        options_.threads != 0 ? options_.threads : std::clamp(std::thread::hardware_concurrency(), 1U, most_threads);
    return static_cast<unsigned>(std::min<std::size_t>(most, wanted_.size()));
}

bool ExtractionRun::take(std::uint64_t bytes) {
    bytes_done_ += bytes;
    std::uint64_t left = left_;
    while (left >= bytes) {
        if (left_.compare_exchange_weak(left, left - bytes)) return goes_on();
    }
    stop_ = Stop::limit;
    return false;
}

void ExtractionRun::record(Content content, MemberResult& result) const {
    result.verdict = content.verdict;
    result.size = content.size;
    result.needs_password = content.needs_password;
    std::move(content.problems.begin(), content.problems.end(), std::back_inserter(result.problems));
    if (!content.sink_failed || goes_on()) return;
    result.verdict = Verdict::refused;
    report_stop(result);
}

void ExtractionRun::report_stop(MemberResult& result) const {
    if (stop_ == Stop::limit) {
        report(result, ProblemKind::limit);
    } else {
        report(result, ProblemKind::cancelled);
    }
}

bool ExtractionRun::allowed(std::size_t place, MemberResult& result) const {
    if (!goes_on()) {
        report_stop(result);
        return false;
    }
    if (place >= limits_.most_members) {
        report(result, ProblemKind::limit, "the archive has more members than the limit allows");
        return false;
    }
    if (member(place).overlaps && !limits_.overlaps) {
        report(result, ProblemKind::overlap);
        return false;
    }
    return true;
}

bool ExtractionRun::look() {
    const bool cancelled = options_.progress && !options_.progress({members_done_, wanted_.size(),
                                                                    std::min(bytes_done_.load(), stated_), stated_});
    Stop none = Stop::none;
    if (cancelled && members_done_ < wanted_.size()) stop_.compare_exchange_strong(none, Stop::cancelled);
    return goes_on();
}

}  // namespace quill::zip
