#pragma once

namespace quill::codec {

class EncodeOutput;
struct EncodeOptions;
struct EncodePiece;

/// Writes `piece` as yEnc: two empty lines, `=ybegin`, for one part of several `=ypart`, the data, `=yend`. The trailer
/// of a part states its `pcrc32`; if a CRC is requested, that of a file in one piece and of a last part states the
/// file's `crc32`. Returns false on failure.
bool write_yenc(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output);

}  // namespace quill::codec
