#include "codec/wrappings/plain_text.h"

#include <algorithm>
#include <utility>

namespace quill::codec {
namespace {

constexpr std::size_t held_text = std::size_t{256} << 10;
constexpr std::size_t held_stretches = 4096;
constexpr std::uint64_t report_every = std::uint64_t{1} << 20;

}  // namespace

Result<std::uint64_t> Spool::begin(std::optional<files::TemporaryFile>& file) {
    if (!file) {
        Result<files::TemporaryFile> made = files::TemporaryFile::create();
        if (!made) return made.error();
        file.emplace(std::move(*made));
    }
    const Status padded = file->begin_page();
    if (!padded) return padded.error();
    return file->size();
}

bool Spool::write(std::optional<files::TemporaryFile>& file, std::string_view bytes) {
    return file->size() + bytes.size() <= largest && file->write(bytes).ok();
}

void PlainText::keep(std::uint64_t begin, std::uint64_t end) {
    if (begin >= end || stopped()) return;
    if (kept_begin_ == kept_end_) {
        kept_begin_ = begin;
        kept_guessed_ = guessed_;
    } else if (begin != kept_end_ || guessed_ != kept_guessed_) {
        flush();
        kept_begin_ = begin;
        kept_guessed_ = guessed_;
    }
    kept_end_ = end;
    size_ += end - begin;
    go_on_to(end);
}

void PlainText::keep(std::string_view part) {
    const auto begin = static_cast<std::uint64_t>(part.data() - wrapped_.bytes().data());
    keep(begin, begin + part.size());
}

void PlainText::add(std::string_view bytes, std::uint64_t at, Pace pace) {
    if (bytes.empty() || stopped()) return;
    flush();
    begin_stretch(at, pace);
    text_ += bytes;
    size_ += bytes.size();
    if (text_.size() >= held_text) flush_text();
    go_on_to(at);
}

/// Adds a stretch at the current end, unless the last one simply continues.
void PlainText::begin_stretch(std::uint64_t wrapped, Pace pace) {
    const std::uint64_t into = size_ - last_.plain;
    const bool goes_on = count_ > 0 && pace == Pace::two_bytes && last_.pace == pace &&
                         last_.wrapped + 2 * into == wrapped && (last_.guessed != 0) == guessed_;
    if (goes_on) return;
    last_ = {size_, wrapped, pace, guessed_ ? 1U : 0U};
    stretches_.push_back(last_);
    ++count_;
    if (stretches_.size() >= held_stretches) flush_text();
}

/// Writes the range of the wrapped text that is held back.
void PlainText::flush() {
    if (kept_begin_ == kept_end_) return;
    const std::uint64_t begin = std::exchange(kept_begin_, kept_end_);
    const std::uint64_t length = kept_end_ - begin;
    const bool guessed = std::exchange(guessed_, kept_guessed_);
    size_ -= length;
    begin_stretch(begin, Pace::same);
    size_ += length;
    guessed_ = guessed;
    for (std::uint64_t at = begin; at < kept_end_ && !failed_;) {
        const std::uint64_t n = std::min<std::uint64_t>(kept_end_ - at, held_text);
        text_ += wrapped_.bytes().substr(at, n);
        at += n;
        if (text_.size() >= held_text) flush_text();
        wrapped_.release_before(at);
    }
}

void PlainText::flush_text() {
    if (!begun_) {
        const Result<std::uint64_t> text = spool_.begin(spool_.texts);
        const Result<std::uint64_t> map = spool_.begin(spool_.maps);
        begun_ = true;
        failed_ = !text || !map;
        if (failed_) return;
        text_begin_ = *text;
        map_begin_ = *map;
    }
    const std::string_view records(reinterpret_cast<const char*>(stretches_.data()),
                                   stretches_.size() * sizeof(Stretch));
    if (!spool_.write(spool_.texts, text_) || !spool_.write(spool_.maps, records)) failed_ = true;
    text_.clear();
    stretches_.clear();
}

void PlainText::go_on_to(std::uint64_t offset) {
    if (offset < reported_ + report_every) return;
    reported_ = offset;
    if (count_ == 0) wrapped_.release_before(offset);
    if (on_unwrapped_ && !on_unwrapped_(offset)) cancelled_ = true;
}

std::optional<Unwrapped> PlainText::finish() {
    const bool same = count_ == 0 && kept_begin_ == 0 && kept_end_ == wrapped_.bytes().size();
    if (same || stopped() || size_ == 0) return std::nullopt;
    flush();
    flush_text();
    if (failed_) return std::nullopt;
    Result<files::Mapping> text = spool_.texts->map(text_begin_);
    Result<files::Mapping> map = spool_.maps->map(map_begin_);
    if (!text || !map) return std::nullopt;
    return Unwrapped{files::MappedFile(std::move(*text)), OffsetMap(std::move(*map), size_)};
}

}  // namespace quill::codec
