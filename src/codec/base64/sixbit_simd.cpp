#include "codec/base64/sixbit.h"
#include "codec/uu/alphabets.h"
#include "simd/simd_dispatch.h"
#include "simd/simd_targets.h"

#include <algorithm>
#include <limits>

// This order matters.
// clang-format off
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "codec/base64/sixbit_simd.cpp"
#include <hwy/foreach_target.h>
#include "simd/simd_blocks-inl.h"
// clang-format on

#ifndef QUILL_SIXBIT_SIMD_ONCE
#define QUILL_SIXBIT_SIMD_ONCE
namespace quill::codec::sixbit {

constexpr simd::CharacterCodes make_codes_with_blanks(std::string_view characters) {
    simd::CharacterCodes codes = simd::make_codes(characters);
    for (const char c : {'\r', '\n', ' ', '\t'}) codes[static_cast<unsigned char>(c)] = simd::blank_code;
    return codes;
}

constexpr simd::CharacterCodes base64_codes = make_codes_with_blanks(base64_characters);
constexpr simd::CharacterCodes binhex_codes = make_codes_with_blanks(binhex_characters);
constexpr simd::Characters base64_output = simd::make_characters(base64_characters);
constexpr simd::Characters binhex_output = simd::make_characters(binhex_characters);

}  // namespace quill::codec::sixbit
#endif

HWY_BEFORE_NAMESPACE();
namespace quill::codec::sixbit::HWY_NAMESPACE {

#if QUILL_HAS_VECTORS
using namespace simd::HWY_NAMESPACE;
using namespace simd;

/// Values of 6 bits, collected from the text without its blanks and to be joined into bytes.
class Values {
  public:
    explicit Values(const State& state) : size_(state.pending) {
        for (std::size_t i = 0; i < size_; ++i) {
            values_[i] = static_cast<char>(state.bits >> 6U * (size_ - 1 - i) & value_bits);
        }
    }

    bool has_room() const { return size_ <= capacity - block_size; }

    /// Adds the characters of `block` up to the first foreign one. Returns how many bytes that is.
    std::size_t take(const CharacterCodes& codes, const Block& block) {
        Block values;
        std::uint64_t data = 0;
        std::uint64_t foreign = 0;
        for (std::size_t k = 0; k < vectors; ++k) {
            const V code = codes_of(codes, block.v[k]);
            values.v[k] = hn::And(code, hn::Set(Bytes(), value_bits));
            data |= high_bits(code) << k * lanes;
            foreign |= bits_of(hn::Eq(code, hn::Zero(Bytes()))) << k * lanes;
        }
        const auto taken = static_cast<std::size_t>(std::countr_zero(foreign));
        char* const end = pack_kept(values, data & low_bits(taken), values_ + size_);
        size_ = static_cast<std::size_t>(end - values_);
        return taken;
    }

    /// Writes the bytes of all full vectors of values, as far as `room` allows full stores. Returns their number.
    std::size_t write_vectors(char* out, std::size_t room) {
        std::size_t used = 0;
        std::size_t written = 0;
        for (; used + lanes <= size_ && written + lanes <= room; used += lanes, written += lanes / 4 * 3) {
            hn::StoreU(join_groups(hn::LoadU(Bytes(), bytes(values_) + used)), Bytes(), bytes(out) + written);
        }
        std::memmove(values_, values_ + used, size_ - used);
        size_ -= used;
        return written;
    }

    /// Writes the remaining groups; puts an incomplete group into `state`.
    std::size_t write_rest(char* out, State& state) {
        std::size_t written = 0;
        state = {};
        for (std::size_t i = 0; i < size_; ++i) {
            state.bits = state.bits << 6U | static_cast<unsigned char>(values_[i]);
            if (++state.pending < 4) continue;
            for (const unsigned shift : {16U, 8U, 0U}) out[written++] = static_cast<char>(state.bits >> shift & 0xFFU);
            state = {};
        }
        return written;
    }

  private:
    static constexpr std::size_t capacity = 4096;  // fits the first-level cache
    alignas(64) char values_[capacity + block_size];
    std::size_t size_;
};

Progress decode(Alphabet alphabet, std::string_view in, char* out, State& state) {
    const CharacterCodes& codes = alphabet == Alphabet::base64 ? base64_codes : binhex_codes;
    const std::size_t bound = decoded_bound(in.size());
    Values values(state);
    Progress progress;
    bool met_foreign = false;
    while (progress.read < in.size() && !met_foreign) {
        while (progress.read + block_size <= in.size() && values.has_room() && !met_foreign) {
            const std::size_t taken = values.take(codes, load_block(in.data() + progress.read));
            progress.read += taken;
            met_foreign = taken < block_size;
        }
        const std::size_t left = in.size() - progress.read;
        if (left < block_size && left > 0 && values.has_room() && !met_foreign) {
            char last[block_size];
            std::memset(last, ' ', sizeof last);
            std::memcpy(last, in.data() + progress.read, left);
            const std::size_t taken = std::min(left, values.take(codes, load_block(last)));
            progress.read += taken;
            met_foreign = taken < left;
        }
        progress.written += values.write_vectors(out + progress.written, bound - progress.written);
    }
    progress.written += values.write_rest(out + progress.written, state);
    return progress;
}

std::size_t encode_groups(Alphabet alphabet, std::string_view in, char* out) {
    const Characters& characters = alphabet == Alphabet::base64 ? base64_output : binhex_output;
    std::size_t done = 0;
    for (; done + lanes <= in.size(); done += lanes / 4 * 3) {
        const V values = split_groups(hn::LoadU(Bytes(), bytes(in.data()) + done));
        hn::StoreU(characters_for(characters, values), Bytes(), bytes(out) + done / 3 * 4);
    }
    return done / 3 * 4 + encode_groups_reference(alphabet, in.substr(done), out + done / 3 * 4);
}

std::size_t encode_base64(std::string_view in, std::size_t line_length, char* out) {
    const char* const begin = out;
    const std::size_t bytes_a_line = line_length == 0 ? std::numeric_limits<std::size_t>::max() : line_length / 4 * 3;
    while (!in.empty()) {
        const std::size_t line = std::min(bytes_a_line, in.size());
        std::size_t done = 0;
        for (char* at = out; done < line && done + lanes <= in.size(); done += lanes / 4 * 3, at += lanes) {
            const V values = split_groups(hn::LoadU(Bytes(), bytes(in.data()) + done));
            hn::StoreU(characters_for(base64_output, values), Bytes(), bytes(at));
        }
        if (done < line) encode_base64_reference(in.substr(done, line - done), 0, out + done / 3 * 4);
        out += (line + 2) / 3 * 4;
        if (line_length != 0) {
            *out++ = '\r';
            *out++ = '\n';
        }
        in.remove_prefix(line);
    }
    return static_cast<std::size_t>(out - begin);
}

#else

std::size_t encode_groups(Alphabet alphabet, std::string_view in, char* out) {
    return encode_groups_reference(alphabet, in, out);
}

Progress decode(Alphabet alphabet, std::string_view in, char* out, State& state) {
    return decode_reference(alphabet, in, out, state);
}

std::size_t encode_base64(std::string_view in, std::size_t line_length, char* out) {
    return encode_base64_reference(in, line_length, out);
}

#endif

}  // namespace quill::codec::sixbit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quill::codec::sixbit {
namespace {
QUILL_KERNELS(decode);
QUILL_KERNELS(encode_groups);
QUILL_KERNELS(encode_base64);
}  // namespace

Progress decode(Alphabet alphabet, std::string_view in, char* out, State& state) {
    return simd::chosen_of(decode_kernels)(alphabet, in, out, state);
}

std::size_t encode_groups(Alphabet alphabet, std::string_view in, char* out) {
    return simd::chosen_of(encode_groups_kernels)(alphabet, in, out);
}

std::size_t encode_base64(std::string_view in, std::size_t line_length, char* out) {
    return simd::chosen_of(encode_base64_kernels)(in, line_length, out);
}

}  // namespace quill::codec::sixbit
#endif
