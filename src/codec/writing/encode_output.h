#pragma once

#include "codec/recovery/recover.h"
#include "files/atomic_file.h"
#include "files/mapped_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace quill::codec {

/// The part of a file for one output.
struct EncodePiece {
    std::string_view name;    ///< of the file, in UTF-8 and without control characters
    std::string_view file;    ///< all its bytes
    std::uint64_t begin = 0;  ///< the bytes to encode: [begin, end) of `file`
    std::uint64_t end = 0;
    std::uint64_t number = 1;  ///< number of this part, from 1
    std::uint64_t count = 1;   ///< total number of parts

    std::string_view bytes() const { return file.substr(begin, end - begin); }
};

/// Returns `name` as the last field of a line. Readers drop double quotes around such a name, so one that has them gets
/// another pair.
std::string name_at_line_end(std::string_view name);

/// The output of a writer. A failure is sticky: the writer may check the results of the calls or continue in vain.
class EncodeOutput {
  public:
    EncodeOutput(files::AtomicFile& file, const files::MappedFile& input, const OnProgress& on_progress)
        : file_(file), input_(input), on_progress_(on_progress) {}

    bool write(std::string_view bytes) { return file_.write(bytes); }

    /// Releases the input's memory before `offset` and reports the progress. Returns false to stop.
    bool used(std::uint64_t offset);

    bool cancelled() const { return cancelled_; }

  private:
    files::AtomicFile& file_;
    const files::MappedFile& input_;
    const OnProgress& on_progress_;
    bool cancelled_ = false;
};

/// Runs encode(in, out), which returns the bytes it wrote, over the bytes of `piece` in blocks of a multiple of `unit`
/// bytes (the last one shorter), and writes its output. bound(n): the most that n bytes can give. Returns false on
/// failure.
template <class Bound, class Encode>
bool encode_in_blocks(const EncodePiece& piece, EncodeOutput& output, std::size_t unit, Bound&& bound,
                      Encode&& encode) {
    constexpr std::size_t about = 256 * 1024;
    const std::size_t block = std::max<std::size_t>(about / unit, 1) * unit;
    const std::string_view bytes = piece.bytes();
    const auto out = std::make_unique_for_overwrite<char[]>(bound(std::min(block, bytes.size())));
    for (std::size_t at = 0; at < bytes.size(); at += block) {
        const std::string_view in = bytes.substr(at, block);
        if (!output.write({out.get(), encode(in, out.get())})) return false;
        if (!output.used(piece.begin + at + in.size())) return false;
    }
    return true;
}

}  // namespace quill::codec
