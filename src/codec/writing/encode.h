#pragma once

#include "codec/recovery/recover.h"
#include "files/atomic_file.h"
#include "text/result.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// From files on the disk to encoded files on the disk.
namespace quill::codec {

class EncodeOutput;
struct EncodePiece;

/// Options beyond the format. Zero means the format's own value.
struct EncodeOptions {
    std::size_t line_length = 0;  ///< characters on a line: MIME (76; a multiple of 4 to 996), yEnc (128; to 997)
    std::uint64_t part_size = 0;  ///< bytes of the file in one output of several: UUE (in whole lines), yEnc; 0: all
    bool crc = false;             ///< yEnc: the trailer states the CRC-32 of the file
    files::OnCollision on_collision = files::OnCollision::fail;  ///< for an output whose name is taken
};

/// A format that files are encoded in.
struct OutputFormat {
    std::string_view name;       ///< as given on a command line
    std::string_view extension;  ///< of the output's name, without the dot
    std::int32_t code;           ///< its number in `DecodingLibrary::EncodeFile`; 0: none
    std::size_t line_length;     ///< characters on a full line
    std::size_t line_limit;      ///< the largest allowed value; 0: the length is fixed
    std::size_t line_unit;       ///< a line's length is a multiple of this
    std::size_t part_unit;       ///< a part's size is rounded down to a multiple of this; 0: there are no parts
    bool takes_crc;
    bool (*write)(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output);
};

/// Returns the formats: UUE, MIME, BinHex, XXE, yEnc.
std::span<const OutputFormat> output_formats();

/// Return the format of that name, or of that code; nullptr if there is none.
const OutputFormat* output_format(std::string_view name);
const OutputFormat* output_format(std::int32_t code);

/// Returns the default output path. For yEnc the last three characters of `path` become "ync"; for the others
/// everything after the first '.' of the whole path (directories included) becomes the extension, and a path without
/// one gives only the extension.
std::string default_output_path(const OutputFormat& format, std::string_view path);

/// Returns the path of part `number`, from 1, of `count`: its number comes before the extension of `output`, padded
/// with zeros to the digits of `count`. Returns `output` itself if `count` is 1.
std::string part_path(const std::string& output, std::uint64_t number, std::uint64_t count);

/// Returns the paths that `encode_file` writes for a file of `size` bytes: `output`, or its parts. Fails in the same
/// way for unsupported options and for too many parts.
Result<std::vector<std::string>> output_paths(const std::string& output, std::uint64_t size, const OutputFormat& format,
                                              const EncodeOptions& options = {});

/// Encodes the file `input` as `output`, or as several parts of it, and returns the paths written; see
/// AtomicFile::create_output for an output that leads to a link, a pipe or a device. Fails with `bad_argument` for
/// options that the format doesn't have and if an output would be the input itself (by the same path, a link or another
/// spelling), with `exists` if a name is taken and must not be replaced (the name is in the text), with `limit` for
/// more than 99 999 parts or a file too large for the format, with `io` for an input that changed meanwhile, with
/// `cancelled`, and with the system's reasons. A failure leaves no new file; files replaced by then stay replaced.
Result<std::vector<std::string>> encode_file(const std::string& input, const std::string& output,
                                             const OutputFormat& format, const EncodeOptions& options = {},
                                             const OnProgress& on_progress = {});

}  // namespace quill::codec
