#pragma once

#include "archive/methods/bit_reader.h"
#include "archive/methods/decompressor.h"

namespace quill::archive {

/// The result of decoding one unit of a stream.
enum class Unit : std::uint8_t { done, ended, broken };

/// The frame of our own decoders: cuts a stream into steps, so that a decoder only handles units of it.
///
/// `Decoder` derives from this and has `Unit decode_unit()`, which reads up to `BitReader::after_fill` bits and writes
/// to `output_`. It is called when there is room and no output is pending. It may read bits that have not arrived yet;
/// then it must change nothing but `bits_`, and is called again for the same unit. `Output` is `Window` or has its
/// functions. `EndsWithInput`: the stream has no mark at its end.
template <class Decoder, class Output, bool EndsWithInput = false>
class SymbolStream : public Decompressor {
  public:
    Step step(std::string_view in, std::span<char> out) final {
        std::string_view rest = in;
        output_.attach(out);
        bool starved = false;
        while (output_.drain() && unit_ == Unit::done && !starved) {
            bits_.fill(rest);
            const BitReader before = bits_;
            const Unit unit = static_cast<Decoder*>(this)->decode_unit();
            starved = bits_.overrun();
            if (starved) {
                bits_ = before;
            } else {
                unit_ = unit;
            }
        }
        const std::size_t filled = in.size() - rest.size();
        const std::size_t unused = starved ? 0 : bits_.give_back(filled);
        return {state(), filled - unused, output_.written()};
    }

  protected:
    BitReader bits_;
    Output output_;

  private:
    StreamState state() const {
        if (output_.waits()) return StreamState::running;
        switch (unit_) {
            case Unit::ended:
                return StreamState::ended;
            case Unit::broken:
                return StreamState::broken;
            case Unit::done:
                break;
        }
        return EndsWithInput ? StreamState::complete : StreamState::running;
    }

    Unit unit_ = Unit::done;
};

}  // namespace quill::archive
