#include "checksum/md5.h"

#include <algorithm>
#include <bit>

namespace quill {
namespace {

// floor(2^32 * |sin(i + 1)|)
constexpr std::array<std::uint32_t, 64> sines = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr std::array<std::array<int, 4>, 4> rotations = {
    {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}}};

std::uint32_t little_endian(const unsigned char* at) {
    return std::uint32_t{at[0]} | std::uint32_t{at[1]} << 8U | std::uint32_t{at[2]} << 16U |
           std::uint32_t{at[3]} << 24U;
}

}  // namespace

void Md5::add_block(const unsigned char* block) {
    auto [a, b, c, d] = state_;
    for (std::uint32_t i = 0; i < 64; ++i) {
        const std::uint32_t round = i / 16;
        std::uint32_t mixed = 0;
        std::uint32_t word = 0;
        switch (round) {
            case 0:
                mixed = (b & c) | (~b & d);
                word = i;
                break;
            case 1:
                mixed = (d & b) | (~d & c);
                word = (5 * i + 1) % 16;
                break;
            case 2:
                mixed = b ^ c ^ d;
                word = (3 * i + 5) % 16;
                break;
            default:
                mixed = c ^ (b | ~d);
                word = (7 * i) % 16;
                break;
        }
        mixed += a + sines[i] + little_endian(block + std::size_t{4} * word);
        a = d;
        d = c;
        c = b;
        b += std::rotl(mixed, rotations[round][i % 4]);
    }
    state_ = {state_[0] + a, state_[1] + b, state_[2] + c, state_[3] + d};
}

void Md5::add(std::string_view bytes) {
    const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t left = bytes.size();
    const std::size_t held = size_ % 64;
    size_ += bytes.size();
    if (held > 0) {
        const std::size_t n = std::min(left, 64 - held);
        std::copy_n(in, n, pending_.begin() + static_cast<std::ptrdiff_t>(held));
        in += n;
        left -= n;
        if (held + n < 64) return;
        add_block(pending_.data());
    }
    for (; left >= 64; in += 64, left -= 64) add_block(in);
    std::copy_n(in, left, pending_.begin());
}

Md5::Digest Md5::finish() {
    const std::uint64_t bits = size_ * 8;
    static constexpr char padding[64] = {'\x80'};
    add({padding, 1 + (119 - size_ % 64) % 64});
    char length[8];
    for (unsigned i = 0; i < 8; ++i) length[i] = static_cast<char>(bits >> (8 * i) & 0xFFU);
    add({length, 8});
    Digest out{};
    for (std::size_t i = 0; i < 16; ++i) out[i] = static_cast<unsigned char>(state_[i / 4] >> (8 * (i % 4)) & 0xFFU);
    return out;
}

}  // namespace quill
