#pragma once

namespace quill::codec {

class EncodeOutput;
struct EncodeOptions;
struct EncodePiece;

/// Writes `piece` as a message of one Base64 body (RFC 2045 6.8). The name is in Content-Disposition and in the
/// subject. One that is not plain ASCII has the form of RFC 2231 there and, for older programs, is quoted or in encoded
/// words (RFC 2047) in `filename=`, in the `name=` of Content-Type and in the subject. The message was never sent, so
/// it has no sender and no date. Returns false on failure.
bool write_mime(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output);

}  // namespace quill::codec
