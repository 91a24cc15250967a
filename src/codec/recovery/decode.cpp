#include "codec/recovery/decode.h"

#include "codec/input/lines.h"
#include "codec/recovery/decode_run.h"
#include "codec/recovery/yenc_join.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace quill::codec {

using report::Evidence;

namespace {

constexpr std::size_t small = std::size_t{64} << 10;  // of one write; smaller ones are held back and joined
constexpr std::size_t held_most = std::size_t{256} << 10;
constexpr std::uint64_t tell_every = std::uint64_t{1} << 20;

std::string count_of(std::uint64_t n, std::string_view things) {
    return std::to_string(n).append(" ").append(things);
}

/// Shortens `ranges` to their first `most` bytes. Returns true if any were dropped.
bool keep_beginning(std::vector<Range>& ranges, std::uint64_t most) {
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        const std::uint64_t size = ranges[i].end - ranges[i].begin;
        if (size > most) {
            ranges[i].end = ranges[i].begin + most;
            ranges.resize(i + 1);
            return true;
        }
        most -= size;
    }
    return false;
}

/// Decodes until at least `enough` bytes have come out, or all.
std::string decode_until(const Attachment& attachment, std::span<const std::string_view> inputs, std::size_t enough) {
    std::string out;
    decode(attachment, inputs, [&](std::string_view bytes) {
        out += bytes.substr(0, enough - out.size());
        return out.size() < enough;
    });
    return out;
}

}  // namespace

/// Skips ranges that are empty, or outside all inputs.
void Body::settle() {
    for (; index_ < ranges_.size(); ++index_) {
        const Range& range = ranges_[index_];
        at_ = range.begin;
        if (range.source < inputs_.size() && range.begin < range.end && range.end <= inputs_[range.source].size())
            return;
    }
}

std::string_view Body::ahead(std::size_t most) const {
    if (at_end()) return {};
    return input().substr(at_, std::min<std::uint64_t>(most, ranges_[index_].end - at_));
}

void Body::pass(std::size_t n) {
    at_ += n;
    untold_ += n;
    const bool ended = at_ >= ranges_[index_].end;
    const bool goes_on = index_ + 1 < ranges_.size() && ranges_[index_ + 1].source == ranges_[index_].source;
    if (untold_ >= tell_every || (ended && !goes_on)) {
        if (on_read_ && !on_read_(ranges_[index_].source, at_)) stopped_ = true;
        untold_ = 0;
    }
    if (!ended) return;
    ++index_;
    settle();
}

std::string_view Body::line(std::size_t most) const {
    const std::string_view rest = ahead(most);
    std::size_t end = find_line_end(rest, 0);
    if (end < rest.size()) end += rest.substr(end, 2) == "\r\n" ? 2U : 1U;
    return rest.substr(0, end);
}

std::string_view Body::behind(std::size_t most) const {
    if (at_end()) return {};
    const std::uint64_t size = std::min<std::uint64_t>(most, at_ - ranges_[index_].begin);
    return input().substr(at_ - size, size);
}

void Sink::put(std::string_view bytes) {
    if (bytes.empty() || stopped_) return;
    outcome_.size += bytes.size();
    if (attachment_.stated_md5) md5_.add(bytes);
    if (attachment_.stated_sum) {
        for (const char c : bytes) {
            sum_ = static_cast<std::uint16_t>(std::rotr(sum_, 1) + static_cast<unsigned char>(c));
        }
    }
    if (bytes.size() < small && held_.size() + bytes.size() <= held_most) {
        held_ += bytes;
        return;
    }
    flush();
    if (bytes.size() < small) {
        held_ += bytes;
    } else if (!stopped_ && !write_(bytes)) {
        stopped_ = true;
    }
}

/// Writes the small pieces held back.
void Sink::flush() {
    if (!held_.empty() && !stopped_ && !write_(held_)) stopped_ = true;
    held_.clear();
}

void Sink::report(ProblemKind kind, std::uint64_t at_input, std::string text) {
    if (outcome_.problems.size() >= most_problems) {
        ++unkept_;
        count(outcome_.proof, kind);
        unkept_do_harm_ = unkept_do_harm_ || report::traits_of(kind).grade != Grade::repaired;
        return;
    }
    const std::optional<std::uint32_t> source = source_ ? source_ : body_.source();
    outcome_.problems.push_back({kind, at_input, outcome_.size, std::move(text), source});
}

void Sink::compare_size(std::uint64_t at_input) {
    if (!attachment_.stated_size) return;
    const std::uint64_t stated = *attachment_.stated_size;
    if (stated == size()) {
        vouch();
        evidence_ = std::max(evidence_, Evidence::size);
        return;
    }
    const bool is_text = attachment_.format == Format::identity || attachment_.format == Format::quoted_printable;
    const std::string text = "The text states " + count_of(stated, "bytes") + ", and " + count_of(size(), "came out");
    if (is_text) {
        report(ProblemKind::size_differs, at_input, text);  // line ends may have changed in transit
    } else {
        report(stated > size() ? ProblemKind::too_few_bytes : ProblemKind::bad_size, at_input, text);
    }
}

void Sink::compare_checksums(std::uint64_t at_input) {
    if (attachment_.checked_sum == Claim::agrees) prove();
    if (attachment_.stated_md5) {
        if (md5_.finish() == *attachment_.stated_md5) {
            prove();
        } else if (attachment_.content_type.starts_with("text/")) {
            report(ProblemKind::md5_differs, at_input);
        } else {
            report(ProblemKind::bad_md5, at_input);
        }
    }
    if (!attachment_.stated_sum) return;
    if (sum_ == *attachment_.stated_sum) {
        prove();
    } else {
        report(ProblemKind::bad_sum, at_input);
    }
}

/// Compares the Content-Length, which counts the unchanged body, with or without the line end that belongs to the
/// boundary.
void Sink::compare_length() {
    if (!attachment_.stated_length) return;
    std::uint64_t length = 0;
    for (const Range& range : attachment_.body) length += range.end - range.begin;
    if (*attachment_.stated_length >= length && *attachment_.stated_length - length <= 2) vouch();
}

/// Makes the problems repaired that what was checked settles, and counts all of them.
void Sink::settle_problems() {
    for (Problem& problem : outcome_.problems) {
        settle(problem, evidence_);
        count(outcome_.proof, problem);
    }
}

/// Sorts the problems by their places in the input. Offsets in different inputs are not comparable: the order of the
/// parts remains.
void Sink::sort_problems() {
    const auto in_first = [this](const Range& range) { return range.source == attachment_.body.front().source; };
    if (!std::all_of(attachment_.body.begin(), attachment_.body.end(), in_first)) return;
    std::stable_sort(outcome_.problems.begin(), outcome_.problems.end(),
                     [](const Problem& a, const Problem& b) { return a.at_input < b.at_input; });
}

Outcome Sink::finish(std::uint64_t at_input) {
    flush();
    compare_length();
    compare_size(at_input);
    compare_checksums(at_input);
    settle_problems();
    sort_problems();
    outcome_.verdict = verdict(outcome_.proof);
    if (unkept_ > 0) {
        outcome_.problems.push_back({unkept_do_harm_ ? ProblemKind::more_problems : ProblemKind::more_repairs, at_input,
                                     size(), "There are " + count_of(unkept_, "further problems")});
    }
    return std::move(outcome_);
}

void decode_identity(Body& body, Sink& sink) {
    for (std::string_view bytes; !(bytes = body.ahead(piece_size)).empty() && !body.stopped() && !sink.stopped();) {
        sink.put(bytes);
        body.pass(bytes.size());
    }
}

Outcome decode(const Attachment& attachment, std::span<const std::string_view> inputs, const Write& write,
               const OnRead& on_read) {
    Body body(attachment.body, inputs, on_read);
    Sink sink(attachment, write, body);
    switch (attachment.format) {
        case Format::base64:
            decode_base64(attachment, body, sink);
            break;
        case Format::uu:
        case Format::xx:
            decode_uu(attachment, body, sink);
            break;
        case Format::binhex:
            decode_binhex(attachment, body, sink);
            break;
        case Format::quoted_printable:
            decode_quoted_printable(attachment, body, sink);
            break;
        case Format::yenc:
            decode_yenc(attachment, inputs, on_read, sink);
            break;
        case Format::identity:
            decode_identity(body, sink);
            break;
    }
    const std::uint64_t end = attachment.body.empty() ? 0 : attachment.body.back().end;
    if (attachment.cut_off && attachment.format != Format::base64) {
        sink.report(ProblemKind::missing_boundary, end);
    }
    return sink.finish(end);
}

std::string decode_first_bytes(const Attachment& attachment, std::span<const std::string_view> inputs,
                               std::size_t most) {
    Attachment beginning = attachment;
    const bool is_part = keep_beginning(beginning.body, 8 * most + 256);
    const std::size_t sure = 4 * most;  // the last row, which may be cut in two, is beyond the first `most`
    std::string out = decode_until(beginning, inputs, sure);
    if (is_part && out.size() < sure) out = decode_until(attachment, inputs, most);
    out.resize(std::min(out.size(), most));
    return out;
}

}  // namespace quill::codec
