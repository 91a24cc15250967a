#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::htx {

enum class AddressKind : std::uint8_t {
    local,     ///< a path within the tree that the page is in
    climbing,  ///< leads above the tree or is a path of a machine: ../../x, file:///x, C:\x
    elsewhere  ///< has a scheme or a host: http:, mailto:, data:, //host/x
};

/// The target of an address in a page.
struct Address {
    AddressKind kind = AddressKind::local;
    std::string path;  ///< from the tree's root, percent-decoded, without "." and ".."; UTF-8 unless decoded otherwise
    std::string written_path;  ///< the same without percent-decoding, for files with such names
    std::string fragment;      ///< the part after #, percent-decoded

    bool operator==(const Address&) const = default;
};

/// Resolves `address`, found in the page at `page` (a path from the root of its tree), as browsers do (RFC 3986 5.2):
/// drops tabs and line ends, reads a backslash as a slash, cuts off a query; an address without a path means the page.
Address resolve(std::string_view page, std::string_view address);

/// Does the same for a page that declares another base for its addresses; an empty one means none.
Address resolve(std::string_view page, std::string_view base, std::string_view address);

/// Replaces %41 and the like with their bytes; keeps a % that two hexadecimal digits do not follow.
std::string decode_percents(std::string_view text);

/// Returns a path as an address for use in quotes: all bytes except letters, digits, blanks inside it and the signs
/// without a meaning in an address are percent-encoded.
std::string encode_percents(std::string_view path);

}  // namespace quill::htx
