#pragma once

#include "checksum/md5.h"
#include "codec/recovery/decode.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The input and output of the decoders of all formats.
namespace quill::codec {

/// The most bytes of input that the decoders process at a time.
constexpr std::size_t piece_size = std::size_t{384} << 10;

/// The encoded bytes of an attachment, range by range.
class Body {
  public:
    Body(std::span<const Range> ranges, std::span<const std::string_view> inputs, const OnRead& on_read)
        : ranges_(ranges), inputs_(inputs), on_read_(on_read) {
        for (const Range& range : ranges_)
            piece_ = std::min<std::uint64_t>(piece_size, piece_ + (range.end - range.begin));
        settle();
    }

    /// Returns the next bytes: `most` of them, or the rest of the range; none at the end.
    std::string_view ahead(std::size_t most) const;

    /// Moves forward by `n` bytes, at most as many as `ahead` returned.
    void pass(std::size_t n);

    /// Returns the rest of the line at the current place, with its line end: at most `most` bytes, and to the end of
    /// the range.
    std::string_view line(std::size_t most) const;

    /// Returns the bytes of the current range before the current place, at most `most`.
    std::string_view behind(std::size_t most) const;

    /// Returns the bytes that a decoder processes at a time: `piece_size`, or all if there are fewer.
    std::size_t piece() const { return piece_; }

    /// Returns the current place in its input.
    std::uint64_t at() const { return at_; }

    /// Returns true if `bytes`, returned by `ahead`, extend to the end of the range.
    bool reach_end(std::string_view bytes) const { return at_end() || at_ + bytes.size() == ranges_[index_].end; }

    /// Returns the characters before each line of the current range that do not belong to it.
    std::size_t quote() const { return at_end() ? 0 : ranges_[index_].quote; }

    /// Returns the input of the current or last place.
    std::optional<std::uint32_t> source() const {
        if (ranges_.empty()) return std::nullopt;
        return ranges_[std::min(index_, ranges_.size() - 1)].source;
    }

    /// Returns the index of the current range.
    std::size_t part() const { return index_; }

    bool at_end() const { return index_ >= ranges_.size(); }
    bool stopped() const { return stopped_; }

  private:
    void settle();
    std::string_view input() const { return inputs_[ranges_[index_].source]; }

    std::span<const Range> ranges_;
    std::span<const std::string_view> inputs_;
    const OnRead& on_read_;
    std::size_t piece_ = 0;
    std::size_t index_ = 0;
    std::uint64_t at_ = 0;
    std::uint64_t untold_ = 0;  ///< bytes passed since the last call of `on_read_`
    bool stopped_ = false;
};

/// Receives the decoded bytes and the problems of one attachment.
class Sink {
  public:
    /// `body` gives the places of problems, unless `read_from` sets the input.
    Sink(const Attachment& attachment, const Write& write, const Body& body)
        : attachment_(attachment), write_(write), body_(body) {
        outcome_.problems = attachment.problems;
    }

    void put(std::string_view bytes);
    std::uint64_t size() const { return outcome_.size; }
    bool stopped() const { return stopped_; }

    /// Sets the input of the problems from now on.
    void read_from(std::uint32_t source) { source_ = source; }

    /// Adds a problem at a place of the input, at the current place of the output.
    void report(ProblemKind kind, std::uint64_t at_input, std::string text = {});

    /// Notes that all sizes, or the checksums of all parts, agree.
    void vouch() { outcome_.proof.size = Claim::agrees; }

    /// Notes that a checksum of all the bytes agrees.
    void prove() {
        outcome_.proof.checksum = Claim::agrees;
        evidence_ = report::Evidence::checksum;
    }

    /// Notes that the rows were measured, and how many of them obey the law of their body. A broken law is reported as
    /// a problem.
    void note_law(std::uint64_t lawful_rows) {
        outcome_.proof.law = BodyLaw::kept;
        outcome_.proof.rows.lawful = lawful_rows;
    }

    /// Returns the outcome, after comparing sizes and checksums that the text states. `at_input` is the end of the
    /// body.
    Outcome finish(std::uint64_t at_input);

  private:
    void flush();
    void compare_size(std::uint64_t at_input);
    void compare_checksums(std::uint64_t at_input);
    void compare_length();
    void settle_problems();
    void sort_problems();

    const Attachment& attachment_;
    const Write& write_;
    const Body& body_;
    std::optional<std::uint32_t> source_;
    Outcome outcome_;
    Md5 md5_;
    std::string held_;
    std::uint16_t sum_ = 0;
    std::size_t unkept_ = 0;
    report::Evidence evidence_ = report::Evidence::none;
    bool unkept_do_harm_ = false;
    bool stopped_ = false;
};

void decode_base64(const Attachment& attachment, Body& body, Sink& sink);
void decode_uu(const Attachment& attachment, Body& body, Sink& sink);
void decode_binhex(const Attachment& attachment, Body& body, Sink& sink);
void decode_quoted_printable(const Attachment& attachment, Body& body, Sink& sink);
void decode_identity(Body& body, Sink& sink);

}  // namespace quill::codec
