#pragma once

namespace quill::codec {

class EncodeOutput;
struct EncodeOptions;
struct EncodePiece;

/// Writes `piece` as BinHex 4.0: the line that announces it, then between colons, run-length packed and in 6-bit
/// characters on lines of 64, the header, the data fork and an empty resource fork, each with its CRC. The name is in
/// UTF-8; one longer than 63 bytes is shortened before its extension. Returns false on a failure, and for a file of 4
/// GiB or more before anything is written.
bool write_binhex(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output);

}  // namespace quill::codec
