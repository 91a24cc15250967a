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

/// What an archive may come to before it is taken for a bomb. The user can lift them all.
struct Limits {
    std::size_t most_members = 1'000'000;
    std::uint64_t most_bytes = std::uint64_t{100} << 30U;
    std::uint64_t most_ratio = 200;  ///< of all bytes read out to the archive's size, beyond `free_bytes`
    std::uint64_t free_bytes = 100'000'000;
    bool overlaps = false;  ///< members that share bytes with others are read too

    /// No limits at all.
    static Limits lifted();
    /// Bytes that an archive of `archive_size` bytes may come to.
    std::uint64_t bytes_for(std::uint64_t archive_size) const;
};

/// What the members of a run come to.
struct Expansion {
    std::uint64_t bytes = 0;
    std::uint64_t archive_size = 0;

    /// "300,000,000 bytes, 1,000 times the size of the archive"
    std::string text() const;
};

struct ExtractOptions {
    std::string password;  ///< empty for none
    Limits limits;
    unsigned threads = 0;  ///< 0: one for each core, at most 16
    /// Called about twenty times a second and at the end.
    Watch progress;
    /// Asked before anything is read where the members come to more bytes than the limits allow: true goes on without
    /// limits of bytes. Where it is empty the answer is no.
    std::function<bool(const Expansion&)> confirm_large;
};

/// What became of one member.
struct MemberResult {
    std::size_t member = 0;  ///< its number in the archive
    Verdict verdict = Verdict::refused;
    std::uint64_t size = 0;  ///< bytes written, or read where nothing is written
    std::string path;        ///< where it is now, below the directory; empty where nothing was written
    std::vector<Problem> problems;
    bool needs_password = false;
};

/// Takes the results of a run in the order of the members wanted, from any of its threads but one at a time.
using TakeResult = std::function<void(MemberResult)>;

/// Extracts the members `wanted` (numbers) to `paths` (one for each member of the archive) below `directory`.
///
/// A file appears under its name only when it is whole, or as whole as it will be; nothing is overwritten: a taken
/// name gets a number. Files have mode 0644 at most and the time that the archive has for them. A symbolic link
/// becomes a small file with the path it leads to. One member's failure stops no other. A run that is cancelled, or
/// comes to more than the limits allow because sizes are not stated, leaves the files that were whole by then. Fails as
/// a whole where the directory can't be entered, and with `limit` where the stated sizes are beyond the limits.
Status extract_members(const Archive& archive, const std::vector<std::size_t>& wanted, const MemberPaths& paths,
                       const std::string& directory, const ExtractOptions& options, const TakeResult& take_result);

/// Reads the members `wanted` and writes nothing. Fails with `limit` as above.
Status test_members(const Archive& archive, const std::vector<std::size_t>& wanted, const ExtractOptions& options,
                    const TakeResult& take_result);

}  // namespace quill::zip
