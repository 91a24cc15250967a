#include "codec/uu/alphabets.h"
#include "codec/uu/uu.h"
#include "simd/simd_dispatch.h"
#include "simd/simd_targets.h"

// This order matters.
// clang-format off
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "codec/uu/uu_simd.cpp"
#include <hwy/foreach_target.h>
#include "simd/simd_blocks-inl.h"
// clang-format on

#ifndef QUILL_UU_SIMD_ONCE
#define QUILL_UU_SIMD_ONCE
namespace quill::codec::uu {

constexpr simd::CharacterCodes make_uu_codes() {
    simd::CharacterCodes codes = simd::make_codes(uu_characters);
    codes[' '] = simd::data_code;
    return codes;
}

constexpr simd::CharacterCodes uu_codes = make_uu_codes();
constexpr simd::CharacterCodes xx_codes = simd::make_codes(xx_characters);
constexpr simd::Characters uu_output = simd::make_characters(uu_characters);
constexpr simd::Characters xx_output = simd::make_characters(xx_characters);

constexpr std::size_t longest_line = 84;  ///< characters after the length character
constexpr std::size_t full_line = 60;     ///< the same in written lines
constexpr std::size_t full_line_bytes = 45;

}  // namespace quill::codec::uu
#endif

HWY_BEFORE_NAMESPACE();
namespace quill::codec::uu::HWY_NAMESPACE {

#if QUILL_HAS_VECTORS
using namespace simd::HWY_NAMESPACE;
using namespace simd;

constexpr std::size_t most_vectors = (longest_line + lanes - 1) / lanes;
constexpr std::size_t vector_bytes = lanes / 4 * 3;  ///< of data in a vector of characters

/// The most that may be read from the beginning of a line.
constexpr std::size_t decode_reach = 1 + most_vectors * lanes;
constexpr std::size_t encode_reach = full_line_bytes + lanes;

/// Decodes `characters` characters into `out`; returns false if one is foreign.
bool decode_groups(const CharacterCodes& codes, const char* in, std::size_t characters, char* out) {
    std::uint64_t foreign = 0;
    for (std::size_t done = 0; done < characters; done += lanes, out += vector_bytes) {
        const V code = codes_of(codes, hn::LoadU(Bytes(), bytes(in) + done));
        foreign |= ~high_bits(code) & low_bits(std::min(lanes, characters - done));
        hn::StoreU(join_groups(hn::And(code, hn::Set(Bytes(), value_bits))), Bytes(), bytes(out));
    }
    return foreign == 0;
}

Progress decode_lines(Alphabet alphabet, std::string_view in, char* out) {
    const CharacterCodes& codes = alphabet == Alphabet::uu ? uu_codes : xx_codes;
    Progress progress;
    char length_character = '\0';
    int length = 0;
    while (in.size() - progress.read >= decode_reach) {
        const char* const line = in.data() + progress.read;
        if (*line != length_character) length = value_of(alphabet, length_character = *line);
        if (length <= 0) return progress;
        const std::size_t characters = (static_cast<std::size_t>(length) + 2) / 3 * 4;
        const char* const line_end = line + 1 + characters;
        const bool ends_in_lf = *line_end == '\n';
        if (!ends_in_lf && (line_end[0] != '\r' || line_end[1] != '\n')) return progress;
        if (!decode_groups(codes, line + 1, characters, out + progress.written)) return progress;
        progress.read += 1 + characters + (ends_in_lf ? 1 : 2);
        progress.written += static_cast<std::size_t>(length);
    }
    const Progress rest = decode_lines_reference(alphabet, in.substr(progress.read), out + progress.written);
    return {progress.read + rest.read, progress.written + rest.written};
}

std::size_t encode_lines(Alphabet alphabet, std::string_view in, char* out) {
    const Characters& characters = alphabet == Alphabet::uu ? uu_output : xx_output;
    const char* const begin = out;
    for (; in.size() >= encode_reach; in.remove_prefix(full_line_bytes)) {
        *out++ = character_for(alphabet, full_line_bytes);
        for (std::size_t done = 0; done < full_line; done += lanes) {
            const V values = split_groups(hn::LoadU(Bytes(), bytes(in.data()) + done / 4 * 3));
            hn::StoreU(characters_for(characters, values), Bytes(), bytes(out) + done);
        }
        out += full_line;
        *out++ = '\r';
        *out++ = '\n';
    }
    return static_cast<std::size_t>(out - begin) + encode_lines_reference(alphabet, in, out);
}

#else

Progress decode_lines(Alphabet alphabet, std::string_view in, char* out) {
    return decode_lines_reference(alphabet, in, out);
}

std::size_t encode_lines(Alphabet alphabet, std::string_view in, char* out) {
    return encode_lines_reference(alphabet, in, out);
}

#endif

}  // namespace quill::codec::uu::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quill::codec::uu {
namespace {
QUILL_KERNELS(decode_lines);
QUILL_KERNELS(encode_lines);
}  // namespace

Progress decode_lines(Alphabet alphabet, std::string_view in, char* out) {
    return simd::chosen_of(decode_lines_kernels)(alphabet, in, out);
}

std::size_t encode_lines(Alphabet alphabet, std::string_view in, char* out) {
    return simd::chosen_of(encode_lines_kernels)(alphabet, in, out);
}

}  // namespace quill::codec::uu
#endif
