#include "archive/methods/methods.h"
#include "archive/methods/prefix_code.h"
#include "archive/methods/symbol_stream.h"
#include "archive/methods/window.h"

#include <array>

namespace quill::archive {
namespace {

constexpr std::size_t window_size = 65536;
constexpr std::size_t most_literal_codes = 286;
constexpr std::size_t distance_codes = 32;
constexpr std::size_t length_codes = 19;
constexpr int end_of_block = 256;

/// The first value of a code, and the number of bits added to it.
struct Base {
    std::uint32_t value = 0;
    int extra = 0;
};

/// Codes 257 to 285: as in RFC 1951 3.2.5, but the last has 16 bits for 3 to 65538.
constexpr auto length_bases = [] {
    std::array<Base, most_literal_codes - end_of_block - 1> bases{};
    std::uint32_t value = 3;
    for (std::size_t i = 0; i < bases.size(); ++i) {
        bases[i] = {value, i < 8 ? 0 : static_cast<int>(i / 4) - 1};
        value += 1U << static_cast<unsigned>(bases[i].extra);
    }
    bases.back() = {3, 16};
    return bases;
}();

/// As in RFC 1951 3.2.5, with two codes more that reach back to 65536.
constexpr auto distance_bases = [] {
    std::array<Base, distance_codes> bases{};
    std::uint32_t value = 1;
    for (std::size_t i = 0; i < bases.size(); ++i) {
        bases[i] = {value, i < 4 ? 0 : static_cast<int>(i / 2) - 1};
        value += 1U << static_cast<unsigned>(bases[i].extra);
    }
    return bases;
}();
static_assert(length_bases[27].value == 227 && distance_bases[31].value == 49153);

constexpr std::array<std::uint8_t, length_codes> length_order{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                              11, 4,  12, 3, 13, 2, 14, 1, 15};

/// Method 9: Deflate (RFC 1951) with a window of 64 KiB, two more distance codes, and one length code changed.
class Deflate64 final : public SymbolStream<Deflate64, Window<window_size>> {
  public:
    Unit decode_unit() {
        switch (next_) {
            case Next::block:
                return read_block_header();
            case Next::stored_size:
                return read_stored_size();
            case Next::stored:
                return read_stored();
            case Next::counts:
                return read_counts();
            case Next::length_code:
                return read_length_code();
            case Next::lengths:
                return read_length();
            case Next::symbol:
                return read_symbol();
            case Next::distance:
                return read_distance();
        }
        return Unit::broken;
    }

  private:
    enum class Next : std::uint8_t { block, stored_size, stored, counts, length_code, lengths, symbol, distance };

    Unit go_on(Next next) {
        next_ = next;
        return Unit::done;
    }

    Unit end_block() {
        next_ = Next::block;
        return last_block_ ? Unit::ended : Unit::done;
    }

    Unit read_block_header() {
        const bool last = bits_.take(1) == 1;
        const std::uint32_t type = bits_.take(2);
        if (type == 0) bits_.align();
        if (bits_.overrun()) return Unit::done;
        last_block_ = last;
        if (type == 0) return go_on(Next::stored_size);
        if (type == 2) return go_on(Next::counts);
        return type == 1 ? use_fixed_codes() : Unit::broken;
    }

    Unit use_fixed_codes() {
        std::array<std::uint8_t, 288> lengths{};
        for (std::size_t i = 0; i < lengths.size(); ++i) lengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
        literals_.build(lengths);
        lengths.fill(5);
        distances_.build(std::span(lengths).first(distance_codes));
        return go_on(Next::symbol);
    }

    Unit read_stored_size() {
        const std::uint32_t size = bits_.take(16), complement = bits_.take(16);
        if (bits_.overrun()) return Unit::done;
        if ((size ^ complement) != 0xFFFF) return Unit::broken;
        stored_left_ = size;
        return size == 0 ? end_block() : go_on(Next::stored);
    }

    Unit read_stored() {
        const std::uint32_t byte = bits_.take(8);
        if (bits_.overrun()) return Unit::done;
        output_.put(static_cast<unsigned char>(byte));
        return --stored_left_ == 0 ? end_block() : Unit::done;
    }

    Unit read_counts() {
        const std::uint32_t literals = 257 + bits_.take(5), distances = 1 + bits_.take(5), codes = 4 + bits_.take(4);
        if (bits_.overrun()) return Unit::done;
        if (literals > most_literal_codes) return Unit::broken;
        literal_count_ = literals;
        count_ = literals + distances;
        length_count_ = codes;
        lengths_.fill(0);
        at_ = 0;
        return go_on(Next::length_code);
    }

    Unit read_length_code() {
        const std::uint32_t bits = bits_.take(3);
        if (bits_.overrun()) return Unit::done;
        lengths_[length_order[at_]] = static_cast<std::uint8_t>(bits);
        if (++at_ < length_count_) return Unit::done;
        if (!literals_.build(std::span(lengths_).first(length_codes))) return Unit::broken;
        lengths_.fill(0);
        at_ = 0;
        return go_on(Next::lengths);
    }

    /// Reads the length of one code, or a run of lengths.
    Unit read_length() {
        const int symbol = literals_.read(bits_);
        if (symbol < 0) return Unit::broken;
        std::uint32_t times = 1;
        if (symbol == 16) times = 3 + bits_.take(2);
        if (symbol == 17) times = 3 + bits_.take(3);
        if (symbol == 18) times = 11 + bits_.take(7);
        if (bits_.overrun()) return Unit::done;
        if (times > count_ - at_ || (symbol == 16 && at_ == 0)) return Unit::broken;
        const std::uint8_t length = symbol < 16    ? static_cast<std::uint8_t>(symbol)
                                    : symbol == 16 ? lengths_[at_ - 1]
                                                   : std::uint8_t{0};
        for (; times > 0; --times) lengths_[at_++] = length;
        return at_ < count_ ? Unit::done : use_read_codes();
    }

    Unit use_read_codes() {
        const auto lengths = std::span(lengths_);
        const bool right = literals_.build(lengths.first(literal_count_)) &&
                           distances_.build(lengths.subspan(literal_count_, count_ - literal_count_));
        return right ? go_on(Next::symbol) : Unit::broken;
    }

    Unit read_symbol() {
        const int symbol = literals_.read(bits_);
        if (symbol < 0) return Unit::broken;
        if (symbol < end_of_block) {
            if (!bits_.overrun()) output_.put(static_cast<unsigned char>(symbol));
            return Unit::done;
        }
        if (symbol == end_of_block) return bits_.overrun() ? Unit::done : end_block();
        const auto code = static_cast<std::size_t>(symbol - end_of_block - 1);
        if (code >= length_bases.size()) return Unit::broken;
        const std::uint32_t length = length_bases[code].value + bits_.take(length_bases[code].extra);
        if (bits_.overrun()) return Unit::done;
        length_ = length;
        return go_on(Next::distance);
    }

    Unit read_distance() {
        const int symbol = distances_.read(bits_);
        if (symbol < 0) return Unit::broken;
        const Base& base = distance_bases[static_cast<std::size_t>(symbol)];
        const std::uint32_t distance = base.value + bits_.take(base.extra);
        if (bits_.overrun()) return Unit::done;
        if (distance > output_.total()) return Unit::broken;
        output_.copy(distance, length_);
        return go_on(Next::symbol);
    }

    Next next_ = Next::block;
    bool last_block_ = false;
    std::uint32_t stored_left_ = 0;
    std::size_t literal_count_ = 0;
    std::size_t count_ = 0;
    std::size_t length_count_ = 0;
    std::size_t at_ = 0;
    std::array<std::uint8_t, most_literal_codes + distance_codes> lengths_{};
    std::uint32_t length_ = 0;
    PrefixCode literals_;  // first the code of the lengths, while these are read
    PrefixCode distances_;
};

}  // namespace

DecompressorPtr make_deflate64(const StreamInfo&) {
    return std::make_unique<Deflate64>();
}

}  // namespace quill::archive
