#include "archive/methods/methods.h"
#include "archive/methods/symbol_stream.h"

#include <algorithm>
#include <array>
#include <string>

namespace quill::archive {
namespace {

constexpr int least_bits = 9;
constexpr int most_bits = 13;
constexpr std::size_t codes = 1U << most_bits;
constexpr std::uint16_t control = 256;  // the code before a command; the others begin at the next
constexpr std::uint16_t none = 0xFFFF;

/// A string that is output as far as there is room.
class StringOutput {
  public:
    void attach(std::span<char> room) {
        room_ = room;
        written_ = 0;
    }
    bool drain() {
        const std::size_t size = std::min(text_.size() - at_, room_.size() - written_);
        std::copy_n(text_.data() + at_, size, room_.data() + written_);
        at_ += size;
        written_ += size;
        return written_ < room_.size();
    }
    void put(std::string text) {
        text_ = std::move(text);
        at_ = 0;
    }
    /// Returns the last string put.
    const std::string& last() const { return text_; }
    bool waits() const { return at_ < text_.size(); }
    std::size_t written() const { return written_; }

  private:
    std::span<char> room_;
    std::size_t written_ = 0;
    std::string text_;
    std::size_t at_ = 0;
};

/// Method 1 (APPNOTE 5.1): LZW with codes of 9 to 13 bits, whose leaves are cleared on command. Ends with its input.
class Shrunk final : public SymbolStream<Shrunk, StringOutput, true> {
  public:
    Shrunk() {
        parents_.fill(none);
        for (std::uint16_t code = 0; code < control; ++code) last_bytes_[code] = static_cast<char>(code);
    }

    Unit decode_unit() {
        const auto code = static_cast<std::uint16_t>(bits_.take(width_));
        if (code == control) return obey(bits_.take(width_));
        if (bits_.overrun()) return Unit::done;
        std::string text = string_of(code);
        if (text.empty()) return Unit::broken;
        if (last_code_ != none && !enter(text.front())) return Unit::broken;
        last_code_ = code;
        output_.put(std::move(text));
        return Unit::done;
    }

  private:
    Unit obey(std::uint32_t command) {
        if (bits_.overrun()) return Unit::done;
        if (command == 1) return ++width_ > most_bits ? Unit::broken : Unit::done;
        if (command != 2) return Unit::broken;
        clear_leaves();
        return Unit::done;
    }

    bool is_free(std::uint16_t code) const { return code > control && parents_[code] == none; }

    /// Builds the string of `code`; empty if it has none. The code that is entered next may already be used: it means
    /// the last string and its first byte.
    std::string string_of(std::uint16_t code) {
        std::string text;
        if (is_free(code)) {
            if (code == next_free() && !output_.last().empty()) text = output_.last() + output_.last().front();
            return text;
        }
        while (code > control) {
            if (is_free(code) || text.size() == codes) return {};  // its beginning was cleared, or it is a cycle
            text.push_back(last_bytes_[code]);
            code = parents_[code];
        }
        text.push_back(last_bytes_[code]);
        std::reverse(text.begin(), text.end());
        return text;
    }

    std::size_t next_free() {
        while (next_ < codes && !is_free(next_)) ++next_;
        return next_;
    }

    /// Enters the last string and the byte that follows it at the first free code. Returns false if all are taken.
    bool enter(char byte) {
        if (next_free() == codes) return false;
        parents_[next_] = last_code_;
        last_bytes_[next_] = byte;
        return true;
    }

    /// Frees the codes that no other code extends.
    void clear_leaves() {
        std::array<bool, codes> is_parent{};
        for (std::size_t code = control + 1U; code < codes; ++code) {
            if (parents_[code] != none) is_parent[parents_[code]] = true;
        }
        for (std::size_t code = control + 1U; code < codes; ++code) {
            if (!is_parent[code]) parents_[code] = none;
        }
        next_ = control + 1;
    }

    int width_ = least_bits;
    std::uint16_t last_code_ = none;
    std::uint16_t next_ = control + 1;  // all codes below it are taken
    std::array<std::uint16_t, codes> parents_{};
    std::array<char, codes> last_bytes_{};
};

}  // namespace

DecompressorPtr make_shrunk(const StreamInfo&) {
    return std::make_unique<Shrunk>();
}

}  // namespace quill::archive
