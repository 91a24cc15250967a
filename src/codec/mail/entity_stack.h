#pragma once

#include "codec/input/line_cursor.h"
#include "codec/mail/mime_header.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::codec {

/// A part without subparts, while its body is read.
struct Leaf {
    ContentHeader header;
    Position begin;  ///< of the body
    std::uint32_t order = 0;
    bool opaque = false;               ///< its lines are not running text: only a boundary counts in them
    bool sealed = false;               ///< a piece of a message, or an encoded one: only outer boundaries count
    bool wraps_file = false;           ///< it is the wrapping of a file in another format (x-uuencode, BinHex)
    bool embedded = false;             ///< its header was found in running text
    bool in_header = false;            ///< the text ends in its header, or not all of that was stored
    std::size_t files_before = 0;      ///< number of files found before it
    std::size_t line_size = 0;         ///< Base64: characters of its first line
    std::optional<Position> data_end;  ///< Base64: where other text begins
};

/// A multipart whose parts are being read, or, at the bottom, the message itself.
struct Level {
    std::string boundary;  ///< without the leading "--"; empty if unknown
    ContentHeader header;
    Position begin;  ///< of the body
    Position end;    ///< where its last boundary line begins
    std::uint32_t order = 0;
    std::uint32_t parts = 0;
    bool multipart = false;
    bool guessed = false;  ///< the boundary is not the declared one
    bool closed = false;   ///< its closing boundary was read
    std::optional<Leaf> leaf;
};

/// The current nesting of multiparts: an explicit stack, so that hostile nesting costs no more than its own bytes.
struct EntityStack {
    std::vector<Level> levels = std::vector<Level>(1);

    Level& top() { return levels.back(); }

    struct Match {
        std::size_t level = 0;
        bool closing = false;
    };
    /// Returns the innermost level whose boundary line `line` is (RFC 2046 5.1.1): the boundary alone, or followed by a
    /// blank and anything else.
    std::optional<Match> match(std::string_view line) const;
};

/// The longest boundary that is stored; RFC 2046 allows 70.
constexpr std::size_t longest_boundary = 512;

}  // namespace quill::codec
