#pragma once

#include "zip/archive.h"
#include "zip/member_paths.h"
#include "zip/member_reader.h"

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
    std::uint64_t free_bytes = std::uint64_t{1} << 30U;
    bool overlaps = false;  ///< members that share bytes with others are read too

    /// No limits at all.
    static Limits lifted();
    /// Bytes that an archive of `archive_size` bytes may come to.
    std::uint64_t bytes_for(std::uint64_t archive_size) const;
};

struct Progress {
    std::size_t members_done = 0;
    std::size_t members = 0;
    std::uint64_t bytes_done = 0;
    std::uint64_t bytes = 0;  ///< as the members' headers state
};

struct ExtractOptions {
    std::string password;  ///< empty for none
    Limits limits;
    unsigned threads = 2;
    /// Called in the caller's thread, at the end and about twenty times a second. False stops the run.
    std::function<bool(const Progress&)> progress;
};

/// What became of one member.
struct MemberResult {
    std::size_t member = 0;  ///< its number in the archive
    Fate fate = Fate::refused;
    std::uint64_t size = 0;  ///< bytes written, or read where nothing is written
    std::string path;        ///< where it is now, below the directory; empty where nothing was written
    std::vector<Problem> problems;
    bool needs_password = false;
};

/// Extracts the members `wanted` (numbers) to `paths` (one for each member of the archive) below `directory`.
///
/// A file appears under its name only when it is whole, or as whole as it will be; nothing is overwritten: a taken
/// name gets a number. Files have mode 0644 at most and the time that the archive has for them. A symbolic link
/// becomes a small file with the path it leads to. One member's failure stops no other. Fails as a whole only where
/// the directory can't be entered.
Result<std::vector<MemberResult>> extract_members(const Archive& archive, const std::vector<std::size_t>& wanted,
                                                  const std::vector<MemberPath>& paths, const std::string& directory,
                                                  const ExtractOptions& options);

/// Reads the members `wanted` and writes nothing.
std::vector<MemberResult> test_members(const Archive& archive, const std::vector<std::size_t>& wanted,
                                       const ExtractOptions& options);

}  // namespace quill::zip
