#include "archive/chain.h"

#include <algorithm>
#include <span>

namespace quill::archive {
namespace {

constexpr std::size_t piece = 256U << 10U;

char* buffer_of(std::unique_ptr<char[]>& buffer) {
    if (!buffer) buffer = std::make_unique_for_overwrite<char[]>(piece);
    return buffer.get();
}

}  // namespace

/// The compressed bytes, decrypted as they are read.
class Chain::Source {
  public:
    Source(std::string_view data, Cipher* cipher, char* plain) : data_(data), cipher_(cipher), plain_(plain) {}

    /// Returns the bytes read but not used yet; the next ones if there are none. Empty at the end of the data.
    std::string_view bytes() {
        if (!ready_.empty() || data_.empty()) return ready_;
        ready_ = cipher_ == nullptr ? data_ : data_.substr(0, piece);
        data_.remove_prefix(ready_.size());
        if (cipher_ != nullptr) {
            std::copy(ready_.begin(), ready_.end(), plain_);
            cipher_->decrypt({plain_, ready_.size()});
            ready_ = {plain_, ready_.size()};
        }
        return ready_;
    }

    void use(std::size_t size) {
        ready_.remove_prefix(size);
        used_ += size;
    }

    std::uint64_t used() const { return used_; }

    /// Decrypts the rest and returns the cipher's verdict.
    std::optional<bool> finish() {
        if (cipher_ == nullptr) return std::nullopt;
        while (!data_.empty()) {
            ready_ = {};
            bytes();
        }
        return cipher_->authentic();
    }

  private:
    std::string_view data_;   // not read yet
    std::string_view ready_;  // decrypted and not used yet
    Cipher* cipher_;
    char* plain_;
    std::uint64_t used_ = 0;
};

Passed Chain::run(std::string_view data, Cipher* cipher, Decompressor& method, std::uint64_t most, const Sink& sink) {
    Source source(data, cipher, cipher == nullptr ? nullptr : buffer_of(plain_));
    char* const out = buffer_of(out_);
    Passed passed;
    bool idle = false;
    while (!idle) {
        const std::string_view in = source.bytes();
        // After all of the content, one byte of room shows whether there is more.
        const std::size_t room = std::clamp<std::uint64_t>(most, 1, piece);
        const Step step = method.step(in, {out, room});
        passed.state = step.state;
        source.use(step.read);
        passed.too_long = step.written > most;
        most -= std::min<std::uint64_t>(step.written, most);
        passed.stopped = !passed.too_long && step.written > 0 && !sink({out, step.written});
        if (passed.too_long || passed.stopped) break;
        if (step.state != StreamState::running && step.state != StreamState::complete) break;
        idle = step.read == 0 && step.written == 0;
    }
    passed.read = source.used();
    if (!passed.stopped) passed.authentic = source.finish();
    return passed;
}

}  // namespace quill::archive
