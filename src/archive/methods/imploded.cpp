#include "archive/methods/methods.h"
#include "archive/methods/prefix_code.h"
#include "archive/methods/symbol_stream.h"
#include "archive/methods/window.h"

#include <array>
#include <limits>
#include <vector>

namespace quill::archive {
namespace {

constexpr std::uint16_t large_window_flag = 1U << 1U;  // APPNOTE 4.4.4: 8 KiB, else 4
constexpr std::uint16_t literal_tree_flag = 1U << 2U;  // and three trees, else two

/// The symbols of the codes, in stream order.
enum Tree : std::uint8_t { literals, lengths, distances, trees };
constexpr std::array<std::size_t, trees> symbols_of{256, 64, 64};

/// Method 6 (APPNOTE 5.3): a sliding window, its matches and literals in Shannon-Fano codes. Ends at the stated size.
class Imploded final : public SymbolStream<Imploded, Window<8192>> {
  public:
    explicit Imploded(const StreamInfo& info)
        : size_(info.size.value_or(std::numeric_limits<std::uint64_t>::max())),
          low_bits_((info.flags & large_window_flag) != 0 ? 7 : 6),
          has_literals_((info.flags & literal_tree_flag) != 0),
          tree_(has_literals_ ? literals : lengths) {}

    Unit decode_unit() {
        if (tree_ != trees) return bytes_left_ == 0 ? read_tree_size() : read_tree_byte();
        if (output_.total() >= size_) return Unit::ended;
        return read_symbol();
    }

  private:
    Unit read_tree_size() {
        const std::uint32_t size = bits_.take(8) + 1;
        if (bits_.overrun()) return Unit::done;
        bytes_left_ = size;
        lengths_.clear();
        return Unit::done;
    }

    /// Reads the length of a code, minus one, and the number of symbols that have it, minus one (APPNOTE 5.3.6).
    Unit read_tree_byte() {
        const std::uint32_t bits = bits_.take(4) + 1, times = bits_.take(4) + 1;
        if (bits_.overrun()) return Unit::done;
        lengths_.insert(lengths_.end(), times, static_cast<std::uint8_t>(bits));
        if (--bytes_left_ > 0) return Unit::done;
        if (lengths_.size() != symbols_of[tree_] || !codes_[tree_].build_imploded(lengths_)) return Unit::broken;
        tree_ = static_cast<Tree>(tree_ + 1);
        return Unit::done;
    }

    Unit read_symbol() {
        if (bits_.take(1) == 1) {
            const int byte = has_literals_ ? codes_[literals].read(bits_) : static_cast<int>(bits_.take(8));
            if (byte < 0) return Unit::broken;
            if (!bits_.overrun()) output_.put(static_cast<unsigned char>(byte));
            return Unit::done;
        }
        const std::uint32_t low = bits_.take(low_bits_);
        const int high = codes_[distances].read(bits_), code = codes_[lengths].read(bits_);
        if (high < 0 || code < 0) return Unit::broken;
        constexpr int longest_code = 63;
        const std::uint32_t more = code == longest_code ? bits_.take(8) : 0;
        if (bits_.overrun()) return Unit::done;
        const std::uint32_t least = has_literals_ ? 3 : 2;
        output_.copy((static_cast<std::uint32_t>(high) << low_bits_ | low) + 1,
                     static_cast<std::uint32_t>(code) + least + more);
        return Unit::done;
    }

    std::uint64_t size_;
    int low_bits_;  // of a distance, outside its code
    bool has_literals_;
    Tree tree_;  // the next to read
    std::uint32_t bytes_left_ = 0;
    std::vector<std::uint8_t> lengths_;
    std::array<PrefixCode, trees> codes_;
};

}  // namespace

DecompressorPtr make_imploded(const StreamInfo& info) {
    return std::make_unique<Imploded>(info);
}

}  // namespace quill::archive
