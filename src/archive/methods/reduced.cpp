#include "archive/methods/methods.h"
#include "archive/methods/symbol_stream.h"
#include "archive/methods/window.h"

#include <array>
#include <bit>
#include <limits>

namespace quill::archive {
namespace {

constexpr unsigned char escape = 144;  // DLE

/// The bytes that often follow another byte: up to 63.
struct Followers {
    std::uint8_t count = 0;
    std::array<std::uint8_t, 63> bytes{};

    int index_bits() const { return count < 3 ? 1 : static_cast<int>(std::bit_width(count - 1U)); }
};

/// Methods 2 to 5 (APPNOTE 5.2): repeats after an escape byte, and over these a code of likely followers. Ends at the
/// stated size.
class Reduced final : public SymbolStream<Reduced, Window<4096>> {
  public:
    explicit Reduced(const StreamInfo& info)
        : size_(info.size.value_or(std::numeric_limits<std::uint64_t>::max())), length_bits_(9U - info.method) {}

    Unit decode_unit() {
        if (sets_left_ > 0) return read_follower();
        if (output_.total() >= size_) return Unit::ended;
        Followers& followers = followers_[last_];
        std::uint32_t byte = 0;
        if (followers.count == 0 || bits_.take(1) == 1) {
            byte = bits_.take(8);
        } else {
            const std::uint32_t index = bits_.take(followers.index_bits());
            if (index >= followers.count) return Unit::broken;
            byte = followers.bytes[index];
        }
        if (bits_.overrun()) return Unit::done;
        last_ = static_cast<unsigned char>(byte);
        expand(last_);
        return Unit::done;
    }

  private:
    enum class Next : std::uint8_t { literal, length, more_length, distance };

    /// Reads the size of a set of followers, beginning with the set of byte 255, or one byte of it.
    Unit read_follower() {
        Followers& followers = followers_[sets_left_ - 1];
        if (!in_set_) {
            const std::uint32_t count = bits_.take(6);
            if (bits_.overrun()) return Unit::done;
            followers.count = static_cast<std::uint8_t>(count);
            in_set_ = true;
        } else {
            const std::uint32_t byte = bits_.take(8);
            if (bits_.overrun()) return Unit::done;
            followers.bytes[at_++] = static_cast<std::uint8_t>(byte);
        }
        if (at_ == followers.count) {
            --sets_left_;
            in_set_ = false;
            at_ = 0;
        }
        return Unit::done;
    }

    /// Expands the repeats (APPNOTE 5.2.5).
    void expand(unsigned char byte) {
        const std::uint32_t longest = (1U << length_bits_) - 1;
        switch (next_) {
            case Next::literal:
                if (byte == escape) {
                    next_ = Next::length;
                } else {
                    output_.put(byte);
                }
                break;
            case Next::length:
                if (byte == 0) {
                    output_.put(escape);
                    next_ = Next::literal;
                    break;
                }
                repeat_ = byte;
                length_ = byte & longest;
                next_ = length_ == longest ? Next::more_length : Next::distance;
                break;
            case Next::more_length:
                length_ += byte;
                next_ = Next::distance;
                break;
            case Next::distance:
                output_.copy((repeat_ >> length_bits_) * 256U + byte + 1, length_ + 3);
                next_ = Next::literal;
                break;
        }
    }

    std::uint64_t size_;
    unsigned length_bits_;  // of the byte after the escape; the others belong to the distance
    std::array<Followers, 256> followers_{};
    std::size_t sets_left_ = 256;
    bool in_set_ = false;
    std::size_t at_ = 0;
    unsigned char last_ = 0;
    Next next_ = Next::literal;
    std::uint32_t repeat_ = 0;
    std::uint32_t length_ = 0;
};

}  // namespace

DecompressorPtr make_reduced(const StreamInfo& info) {
    return std::make_unique<Reduced>(info);
}

}  // namespace quill::archive
