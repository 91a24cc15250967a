#pragma once

#include "zip/format.h"

#include <functional>
#include <string>
#include <string_view>

namespace quill::zip {

/// What libzip came to with one member.
struct LibzipResult {
    bool whole = false;  ///< read to its end, CRC or authentication code agrees
    bool wrong_password = false;
    std::string error;  ///< libzip's words; empty where `whole`
};

/// Whether libzip can decompress `method`.
bool libzip_reads(std::uint16_t method);

/// Decrypts and decompresses `data`, the bytes behind the local header of the member that `header` describes (its
/// sizes and CRC as they are to be believed), by way of an archive of that one member in memory: libzip sees nothing
/// else of the file that it is in. `sink` takes the bytes; false from it stops. Up to 4 GiB.
LibzipResult read_member_by_libzip(const Header& header, std::string_view data, const std::string& password,
                                   const std::function<bool(std::string_view)>& sink);

}  // namespace quill::zip
