#pragma once

#include "zip/archive.h"
#include "zip/format.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct libdeflate_decompressor;

namespace quill::zip {

/// What became of a member that was to be read.
enum class Fate : std::uint8_t {
    verified,  ///< Its CRC, or the code that authenticates it, agrees.
    whole,     ///< Its data ended as they should; nothing vouches for the bytes.
    damaged,   ///< Bytes of it were given out, but are wrong, cut or in doubt.
    refused    ///< Nothing was given out: the problem says why.
};

/// "verified", "whole", "damaged", "refused".
std::string_view name_of(Fate fate);

/// What reading one member came to.
struct Content {
    Fate fate = Fate::refused;
    std::uint64_t size = 0;  ///< bytes given out
    std::vector<Problem> problems;
    bool sink_failed = false;     ///< the taker of the bytes refused them
    bool needs_password = false;  ///< refused for want of the right password
};

/// Takes the bytes of a member in order; false stops the reading. Empty bytes only ask whether to go on.
using Sink = std::function<bool(std::string_view)>;

/// Reads members of one archive. Each thread has its own.
///
/// Stored members are handed on from the mapped file, deflated ones of up to 64 MiB by way of one buffer, larger ones,
/// encrypted ones and those of other methods in pieces. Memory is bounded by that buffer whatever the headers say.
class MemberReader {
  public:
    /// `archive` must outlive it. `password` is empty for none.
    MemberReader(const Archive& archive, std::string password);
    ~MemberReader();

    /// Gives the bytes of `member`, one of the archive's, to `sink`. What comes before damage is given out too. Where
    /// the member's own header has other numbers than the directory, those that the data agree with count.
    Content read(const Member& member, const Sink& sink);

  private:
    struct Source;
    class Meter;

    Content read_as(const Member& member, const Sink& sink);
    bool checks_out(const Member& member, const Sink& sink);
    std::optional<Member> as_in_own_header(const Member& member) const;
    bool locate(const Member& member, Source& source, Content& content) const;
    bool prepare_decryption(const Member& member, Source& source, Content& content) const;
    static void copy_stored(Source& source, Meter& meter);
    void inflate(const Member& member, Source& source, Meter& meter, Content& content);
    bool inflate_whole(const Member& member, const Source& source, Meter& meter, Content& content);
    void inflate_in_pieces(Source& source, Meter& meter, Content& content);
    void read_through_libzip(const Member& member, Source& source, Meter& meter, Content& content);
    void judge(const Member& member, const Source& source, const Meter& meter, Content& content) const;

    struct FreeDecompressor {
        void operator()(libdeflate_decompressor* decompressor) const;
    };

    const Archive& archive_;
    std::string password_;
    std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor_;
    std::unique_ptr<char[]> buffer_;
    std::size_t buffer_size_ = 0;
};

}  // namespace quill::zip
