#pragma once

#include "archive/chain.h"
#include "archive/container/archive.h"
#include "archive/container/format.h"
#include "archive/methods/methods.h"
#include "archive/methods/whole_inflater.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// The result of reading one member.
struct Content {
    Verdict verdict = Verdict::refused;
    std::uint64_t size = 0;  ///< bytes passed on, never more than the member states
    std::vector<Problem> problems;
    bool sink_failed = false;     ///< the sink refused the bytes
    bool needs_password = false;  ///< refused because the right password is missing
};

/// Receives the bytes of a member in order; returns false to stop the reading. Empty bytes only ask whether to
/// continue.
using Sink = archive::Sink;

/// Reads members of one archive. Each thread has its own.
///
/// Deflated members of up to 64 MiB are decompressed into one buffer, all others in pieces. Memory is bounded by that
/// buffer and the windows of the methods, whatever the headers say.
class MemberReader {
  public:
    /// Makes a reader of `archive`, which must outlive it. `password` is empty for none.
    MemberReader(const Archive& archive, std::string password);

    /// Passes the bytes of `member`, one of the archive's, to `sink`, including those before damage. If the member's
    /// own header and the directory have different numbers, those that match the data count.
    Content read(const Member& member, const Sink& sink);

  private:
    struct Source;
    class Meter;

    Content read_as(const Member& member, const Sink& sink);
    bool checks_out(const Member& member, const Sink& sink);
    std::optional<Member> as_in_own_header(const Member& member) const;
    bool locate(const Member& member, Source& source, Content& content) const;
    bool open_cipher(const Member& member, Source& source, Content& content) const;
    bool open_traditional(const Member& member, Source& source, Content& content) const;
    bool open_aes(const Member& member, Source& source, Content& content) const;
    archive::Passed decode(const Member& member, const Source& source, const archive::Method& method, Meter& meter);
    void judge(const Member& member, const Source& source, const archive::Passed& passed, const Meter& meter,
               Content& content) const;
    bool check_numbers(const Member& member, const Source& source, const archive::Passed& passed, const Meter& meter,
                       Content& content) const;
    Verdict judge_by_descriptor(const Source& source, const archive::Passed& passed, const Meter& meter,
                                Content& content) const;
    void check_ends(const Member& member, const Source& source, const archive::Passed& passed, Content& content) const;

    const Archive& archive_;
    std::string password_;
    archive::Chain chain_;
    archive::WholeInflater inflater_;
};

}  // namespace quill::zip
