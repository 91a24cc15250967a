#pragma once

namespace quill::codec {

class EncodeOutput;
struct EncodeOptions;
struct EncodePiece;

/// Writes `piece` as uuencoded (POSIX uuencode, historical algorithm) or xxencoded text: a `begin` line with the mode
/// 644, the lines, the line of length 0, `end`. A file in parts has `begin` in the first and `end` in the last; each
/// part has a subject line that identifies it. Returns false on failure.
bool write_uue(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output);
bool write_xxe(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output);

}  // namespace quill::codec
