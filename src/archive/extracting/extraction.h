#pragma once

#include "archive/container/archive.h"
#include "archive/container/member_reader.h"
#include "archive/names/member_paths.h"
#include "archive/progress.h"
#include "text/result.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quill::zip {

/// The most that an archive may expand to before it is treated as a bomb. The user can lift all limits.
struct Limits {
    std::size_t most_members = 1'000'000;
    std::uint64_t most_bytes = std::uint64_t{100} << 30U;
    std::uint64_t most_ratio = 200;  ///< ratio of all output to the archive's size, beyond `free_bytes`
    std::uint64_t free_bytes = 100'000'000;
    bool overlaps = false;  ///< members that share bytes with others are read too

    /// Returns limits that allow everything.
    static Limits lifted();
    /// Returns the bytes that an archive of `archive_size` bytes may expand to.
    std::uint64_t bytes_for(std::uint64_t archive_size) const;
};

/// The total size of the members of a run.
struct Expansion {
    std::uint64_t bytes = 0;
    std::uint64_t archive_size = 0;

    /// Returns "300,000,000 bytes, 1,000 times the size of the archive".
    std::string text() const;
};

struct ExtractOptions {
    std::string password;  ///< empty for none
    Limits limits;
    unsigned threads = 0;  ///< 0: one for each core, at most 16
    /// Is called about twenty times a second and at the end.
    Watch progress;
    /// Is asked before anything is read if the members expand to more bytes than the limits allow: true continues
    /// without byte limits. Empty means no.
    std::function<bool(const Expansion&)> confirm_large;
};

/// The result for one member.
struct MemberResult {
    std::size_t member = 0;  ///< its number in the archive
    Verdict verdict = Verdict::refused;
    std::uint64_t size = 0;  ///< bytes written, or read if nothing is written
    std::string path;        ///< its path below the directory; empty if nothing was written
    std::vector<Problem> problems;
    bool needs_password = false;
};

/// Receives the results of a run in the order of the requested members, from any of its threads but one at a time.
using TakeResult = std::function<void(MemberResult)>;

/// Extracts the members `wanted` (numbers) to `paths` (one for each member of the archive) below `directory`.
///
/// A file appears under its name only when it is complete, or as complete as it will be; nothing is overwritten: a
/// taken name gets a number. Files have mode 0644 at most and the modification time from the archive. A symbolic link
/// becomes a small file that contains the link's target. One member's failure stops no other. A run that is cancelled,
/// or exceeds the limits because sizes are not stated, leaves the files that were complete by then. Fails as a whole if
/// the directory can't be entered, and with `limit` if the stated sizes exceed the limits.
Status extract_members(const Archive& archive, const std::vector<std::size_t>& wanted, const MemberPaths& paths,
                       const std::string& directory, const ExtractOptions& options, const TakeResult& take_result);

/// Reads the members `wanted` and writes nothing. Fails with `limit` in the same way.
Status test_members(const Archive& archive, const std::vector<std::size_t>& wanted, const ExtractOptions& options,
                    const TakeResult& take_result);

}  // namespace quill::zip
