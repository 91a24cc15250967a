#pragma once

#include <cstdint>
#include <string_view>

namespace quill {

/// Returns the CRC-32 (IEEE 802.3, reflected, as in yEnc and ZIP) of `bytes` appended to data whose CRC is `crc`; 0 to
/// begin.
std::uint32_t crc32(std::uint32_t crc, std::string_view bytes);

/// Returns the CRC-16 of BinHex 4.0 (polynomial 0x1021, not reflected, initial value 0) of `bytes` appended to data
/// whose CRC is `crc`.
std::uint16_t crc16_binhex(std::uint16_t crc, std::string_view bytes);

}  // namespace quill
