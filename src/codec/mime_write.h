#pragma once

namespace quill::codec {

class EncodeOutput;
struct EncodeOptions;
struct EncodePiece;

/// Writes `piece` as a message of one Base64 body (RFC 2045 6.8). The name stands in Content-Disposition, quoted where
/// it is plain ASCII, else in the form of RFC 2231, and in the subject, there as encoded words (RFC 2047). A message
/// that nobody has sent has no sender and no date. False on a failure.
bool write_mime(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output);

}  // namespace quill::codec
