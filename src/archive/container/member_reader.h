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

/// What reading one member came to.
struct Content {
    Verdict verdict = Verdict::refused;
    std::uint64_t size = 0;  ///< bytes given out, never more than the member states
    std::vector<Problem> problems;
    bool sink_failed = false;     ///< the sink refused the bytes
    bool needs_password = false;  ///< refused for want of the right password
};

/// Takes the bytes of a member in order; false stops the reading. Empty bytes only ask whether to go on.
using Sink = archive::Sink;

/// Reads members of one archive. Each thread has its own.
///
/// Deflated members of up to 64 MiB are decompressed by way of one buffer, all others in pieces. Memory is bounded by
/// that buffer and the windows of the methods whatever the headers say.
class MemberReader {
  public:
    /// `archive` must outlive it. `password` is empty for none.
    MemberReader(const Archive& archive, std::string password);

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
