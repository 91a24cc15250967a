#pragma once

#include "files/atomic_file.h"
#include "text/result.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Joining the posts of one long attachment, each saved as a file of its own, into one file.
namespace quill::encoder {

/// How far a merge has come.
struct MergeProgress {
    std::size_t index = 0;  ///< of the current piece, from 0
    std::size_t count = 0;  ///< how many pieces there are: files, or parts of a series
    double of_piece = 0;    ///< how much of the current piece is done, from 0 to 1
};

/// Called at the beginning of each piece and periodically in it; returns false to stop the merge.
using OnMerge = std::function<bool(const MergeProgress& progress)>;

/// A file that did not take part, or a part of it, and why.
struct LeftOut {
    std::string path;
    std::string reason;
    bool unreadable = false;  ///< the system would not open the file
};

/// What a merge came to.
struct Merged {
    std::uint64_t size = 0;         ///< bytes written
    std::size_t parts = 0;          ///< parts that were joined
    std::vector<LeftOut> left_out;  ///< files that could not be read, or whose part has no place in the series
    std::vector<unsigned> missing;  ///< part numbers of the series that no file has
    bool in_order = true;           ///< no part was joined before one with a lower number
};

/// Returns sentences without a full stop about what the merge lacks or has in the wrong order, besides `left_out`.
std::vector<std::string> doubts_about(const Merged& merged);

/// One part of a yEnc post: where it is.
struct YencPart {
    std::size_t file = 0;    ///< which of the files searched
    unsigned number = 0;     ///< its part number, from 1
    unsigned total = 0;      ///< how many parts its `=ybegin` line states; 0 where it states none
    std::uint64_t head = 0;  ///< offset of its `=ybegin` line; of the file's beginning for its first part
    std::uint64_t data = 0;  ///< offset behind its `=ypart` line
    std::uint64_t end = 0;   ///< offset of the next part's `=ybegin` line, or the file's length
};

/// Returns the parts that `post` holds, by their `=ypart begin` lines, each numbered by the `=ybegin` line before it.
/// Lines end at CR or CR LF; a post without any CR may end them by LF.
std::vector<YencPart> find_parts(std::string_view post, std::size_t file);

/// Returns the parts in the order of their numbers: 1, 2, 3 ... up to `most`. A number that no part has is skipped,
/// of two parts of one number the first counts, and a number beyond that drops out.
std::vector<YencPart> ordered(const std::vector<YencPart>& parts, std::size_t most);

/// Joins `paths` line by line, in the order given, each line ended by CR LF, into `output`, which appears or is
/// replaced only when whole (see AtomicFile::create_output for one that leads to a link, a pipe or a device). A file
/// that cannot be read is reported as left out; fails when none could be read, where `progress` stops it (`cancelled`),
/// or on writing. Numbers that texts, subjects or file names give the parts show what is missing and whether the order
/// is theirs. Only one of the files is open at a time.
Result<Merged> merge_text(std::span<const std::string> paths, const std::string& output, const OnMerge& progress = {},
                          files::OnCollision on_collision = files::OnCollision::replace);

/// Joins the yEnc parts in `paths`, whatever their order, into `output`, which appears or is replaced only when whole:
/// the first part from its file's beginning to its `=yend`, the data alone of those between, and the last one's data to
/// its end, `=yend` line and all. All bytes stay as they are, unless some of the parts are Unix text and others are
/// not: then the former get CR LF for each LF, so that the whole ends its lines in one way. Fails with `bad_input`
/// where a file holds no part (the text names it), with `bad_argument` where fewer than two files can be read
/// or no part has a place in the series, where `progress` stops it (`cancelled`), where a file changes meanwhile, or on
/// writing. Only one of the files is open at a time.
Result<Merged> merge_yenc(std::span<const std::string> paths, const std::string& output, const OnMerge& progress = {},
                          files::OnCollision on_collision = files::OnCollision::replace);

/// Returns true where each of `paths` that can be read holds a yEnc part, and at least one can be.
bool hold_yenc_parts(std::span<const std::string> paths);

}  // namespace quill::encoder
