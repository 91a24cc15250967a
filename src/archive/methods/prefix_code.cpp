#include "archive/methods/prefix_code.h"

#include <algorithm>
#include <array>

namespace quill::archive {
namespace {

constexpr std::uint32_t all_codes = 1U << PrefixCode::most_bits;

/// Returns the symbols that have a code, shortest codes first, otherwise in their order.
std::vector<std::size_t> by_length(std::span<const std::uint8_t> lengths) {
    std::array<std::size_t, PrefixCode::most_bits + 2> place{};
    for (const std::uint8_t bits : lengths) ++place[bits + 1U];
    const std::size_t unused = place[1];
    place[1] = 0;
    for (std::size_t i = 2; i < place.size(); ++i) place[i] += place[i - 1];
    std::vector<std::size_t> symbols(lengths.size() - unused);
    for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
        if (lengths[symbol] != 0) symbols[place[lengths[symbol]]++] = symbol;
    }
    return symbols;
}

/// Returns the 16 bits of `code` in reverse order.
std::uint32_t reversed(std::uint32_t code) {
    code = (code & 0x5555U) << 1U | (code >> 1U & 0x5555U);
    code = (code & 0x3333U) << 2U | (code >> 2U & 0x3333U);
    code = (code & 0x0F0FU) << 4U | (code >> 4U & 0x0F0FU);
    return (code & 0x00FFU) << 8U | code >> 8U;
}

}  // namespace

void PrefixCode::begin(std::span<const std::uint8_t> lengths) {
    longest_ = *std::max_element(lengths.begin(), lengths.end());
    table_.assign(std::size_t{1} << longest_, {-1, static_cast<std::uint8_t>(longest_)});
}

/// Enters a code that is written from bit 15 down.
bool PrefixCode::add(std::size_t symbol, std::uint32_t code, unsigned bits) {
    const std::uint32_t width = all_codes >> bits;
    if (code + width > all_codes || code % width != 0) return false;
    for (std::size_t i = reversed(code); i < table_.size(); i += std::size_t{1} << bits) {
        table_[i] = {static_cast<std::int16_t>(symbol), static_cast<std::uint8_t>(bits)};
    }
    return true;
}

bool PrefixCode::build(std::span<const std::uint8_t> lengths) {
    begin(lengths);
    std::uint32_t code = 0;
    for (const std::size_t symbol : by_length(lengths)) {
        if (!add(symbol, code, lengths[symbol])) return false;
        code += all_codes >> lengths[symbol];
    }
    return true;
}

bool PrefixCode::build_imploded(std::span<const std::uint8_t> lengths) {
    begin(lengths);
    const std::vector<std::size_t> symbols = by_length(lengths);
    std::uint32_t code = 0;
    for (auto symbol = symbols.rbegin(); symbol != symbols.rend(); ++symbol) {
        if (!add(*symbol, code, lengths[*symbol])) return false;
        code += all_codes >> lengths[*symbol];
    }
    return true;
}

}  // namespace quill::archive
