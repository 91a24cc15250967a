#pragma once

namespace quill::codec {

class EncodeOutput;
struct EncodeOptions;
struct EncodePiece;

/// Writes `piece` as yEnc: two empty lines, `=ybegin`, for one part of several `=ypart`, the data, `=yend`. The trailer
/// of a part states its `pcrc32`; where a CRC is asked for, that of a file in one piece and of a last part states the
/// file's `crc32`. False on a failure.
bool write_yenc(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output);

}  // namespace quill::codec
