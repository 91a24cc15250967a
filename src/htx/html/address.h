#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::htx {

enum class AddressKind : std::uint8_t {
    local,     ///< a path within the tree that the page is in
    climbing,  ///< leads above the tree or is a path of a machine: ../../x, file:///x, C:\x
    elsewhere  ///< has a scheme of its own or a host: http:, mailto:, data:, //host/x
};

/// Where an address in a page leads.
struct Address {
    AddressKind kind = AddressKind::local;
    std::string path;  ///< from the tree's root, percents decoded, without "." and ".."; UTF-8 unless decoded otherwise
    std::string written_path;  ///< the same without decoding percents, for files that are called so
    std::string fragment;      ///< what follows #, percents decoded

    bool operator==(const Address&) const = default;
};

/// Resolves `address`, found in the page at `page` (a path from the root of its tree), as browsers do (RFC 3986 5.2):
/// tabs and line ends are dropped, a backslash is a slash, a query is cut off; an address without a path means the
/// page.
Address resolve(std::string_view page, std::string_view address);

/// The same where the page has named another base for its addresses; an empty one is none.
Address resolve(std::string_view page, std::string_view base, std::string_view address);

/// Replaces %41 and the like by their bytes; what is not followed by two hexadecimal digits stays.
std::string decode_percents(std::string_view text);

/// Writes a path so that it can be an address in quotes: all bytes but letters, digits, blanks inside it and the signs
/// that mean nothing in an address become percents.
std::string encode_percents(std::string_view path);

}  // namespace quill::htx
