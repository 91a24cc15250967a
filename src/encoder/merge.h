#pragma once

#include "files/atomic_file.h"
#include "text/result.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Joins the posts of one long attachment, each saved as a separate file, into one file.
namespace quill::encoder {

/// The progress of a merge.
struct MergeProgress {
    std::size_t index = 0;  ///< of the current piece, from 0
    std::size_t count = 0;  ///< number of pieces: files, or parts of a series
    double of_piece = 0;    ///< done part of the current piece, from 0 to 1
};

/// Is called at the beginning of each piece and periodically in it; returns false to stop the merge.
using OnMerge = std::function<bool(const MergeProgress& progress)>;

/// A file that was left out, or a part of it, and why.
struct LeftOut {
    std::string path;
    std::string reason;
    bool unreadable = false;  ///< the system could not open the file
};

/// The result of a merge.
struct Merged {
    std::uint64_t size = 0;         ///< bytes written
    std::size_t parts = 0;          ///< parts that were joined
    std::vector<LeftOut> left_out;  ///< files that could not be read, or whose part does not belong to the series
    std::vector<unsigned> missing;  ///< part numbers of the series that no file has
    bool in_order = true;           ///< no part was joined before one with a lower number
};

/// Returns sentences without a full stop about gaps or wrong order in the merge, besides `left_out`.
std::vector<std::string> doubts_about(const Merged& merged);

/// The place of one part of a yEnc post.
struct YencPart {
    std::size_t file = 0;    ///< index among the searched files
    unsigned number = 0;     ///< its part number, from 1
    unsigned total = 0;      ///< number of parts that its `=ybegin` line states; 0 if it states none
    std::uint64_t head = 0;  ///< offset of its `=ybegin` line; for a file's first part, of the file's beginning
    std::uint64_t data = 0;  ///< offset after its `=ypart` line
    std::uint64_t end = 0;   ///< offset of the next part's `=ybegin` line, or the file's length
};

/// Returns the parts in `post`, found by their `=ypart begin` lines, each numbered by the `=ybegin` line before it.
/// Lines end at CR or CR LF; in a post without any CR also at LF.
std::vector<YencPart> find_parts(std::string_view post, std::size_t file);

/// Returns the parts in the order of their numbers: 1, 2, 3 ... up to `most`. Skips a missing number, keeps the first
/// of two parts of one number, and drops higher numbers.
std::vector<YencPart> ordered(const std::vector<YencPart>& parts, std::size_t most);

/// Joins `paths` line by line, in the given order, each line ended by CR LF, into `output`, which appears or is
/// replaced only when complete (see AtomicFile::create_output for one that leads to a link, a pipe or a device).
/// Reports a file that cannot be read as left out; fails if none could be read, if `progress` stops it (`cancelled`),
/// or on writing. Part numbers in texts, subjects or file names show what is missing and whether the order is right.
/// Only one of the files is open at a time.
Result<Merged> merge_text(std::span<const std::string> paths, const std::string& output, const OnMerge& progress = {},
                          files::OnCollision on_collision = files::OnCollision::replace);

/// Joins the yEnc parts in `paths`, in any order, into `output`, which appears or is replaced only when complete: the
/// first part from its file's beginning to its `=yend`, only the data of those between, and the last one's data to its
/// end, including the `=yend` line. All bytes stay the same, unless some of the parts are Unix text and others are not:
/// then the former get CR LF for each LF, so that all line ends agree. Fails with `bad_input` if a file holds no part
/// (the text names it), with `bad_argument` if fewer than two files can be read or no part belongs to the series, if
/// `progress` stops it (`cancelled`), if a file changes meanwhile, or on writing. Only one of the files is open at a
/// time.
Result<Merged> merge_yenc(std::span<const std::string> paths, const std::string& output, const OnMerge& progress = {},
                          files::OnCollision on_collision = files::OnCollision::replace);

/// Returns true if each readable file of `paths` holds a yEnc part and at least one is readable.
bool hold_yenc_parts(std::span<const std::string> paths);

}  // namespace quill::encoder
