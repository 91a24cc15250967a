#pragma once

#include "pics/format.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quill::pics {

/// An entry of an album's directory.
struct Record {
    std::string stored_name;            ///< as in the file: of the picture, or of its thumbnail
    std::optional<std::uint64_t> size;  ///< of the picture; nullopt if no number can be read
    bool strict = false;                ///< padded to its end and with a size: undoubtedly a record

    bool operator==(const Record&) const = default;
};

/// Reads the record at the beginning of `slot`; nullopt if fewer than 299 bytes are left or it does not begin with a
/// tag. Its last `^` separates name and size, so that a name may contain one.
std::optional<Record> parse_record(std::string_view slot);

/// Returns the 300 bytes of a record. REQUIRES: `stored_name` has at most 264 bytes (a file name and the additions of a
/// thumbnail's name).
std::string make_record(std::string_view stored_name, std::uint64_t size);

/// Returns the name of the thumbnail of the picture `name`.
std::string thumbnail_name(std::string_view name);

/// Returns the picture's name from that of its thumbnail.
std::string_view picture_name(std::string_view thumbnail_name);

/// Returns a file's name as albums store it: in Windows-1252 if that has all its characters and can't be mistaken for
/// UTF-8, else unchanged.
std::string stored_text(std::string_view file_name);

}  // namespace quill::pics
