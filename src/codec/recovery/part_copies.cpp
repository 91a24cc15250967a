#include "codec/recovery/part_copies.h"

#include "checksum/checksum.h"
#include "codec/base64/base64_lines.h"
#include "codec/input/line_cursor.h"
#include "codec/uu/uu_line.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <utility>

namespace quill::codec {
namespace {

constexpr std::size_t most_compared = 8;  // different copies that a further one is compared with

/// The non-blank lines of a copy, without blanks at their ends.
class CopyLines {
  public:
    CopyLines(const FoundFile& file, std::span<const std::string_view> inputs) : cursor_(segments(file, inputs)) {}

    bool next() {
        while (cursor_.next(line_)) {
            text = line_.text.substr(0, line_.text.find_last_not_of(" \t") + 1);
            if (!text.empty()) return true;
        }
        text = {};
        return false;
    }

    std::string_view text;

  private:
    static std::vector<Segment> segments(const FoundFile& file, std::span<const std::string_view> inputs) {
        std::vector<Segment> out;
        for (const Range& range : file.attachment.body) out.push_back({inputs[range.source], range});
        return out;
    }

    LineCursor cursor_;
    Line line_;
};

/// Returns a digest: two copies with the same digest have the same lines.
std::pair<std::uint64_t, std::uint32_t> digest_of(const FoundFile& file, std::span<const std::string_view> inputs) {
    std::uint64_t size = 0;
    std::uint32_t crc = 0;
    for (CopyLines lines(file, inputs); lines.next();) {
        size += lines.text.size() + 1;
        crc = crc32(crc32(crc, lines.text), "\n");
    }
    return {size, crc};
}

/// Returns true if the copy `shorter` contains the beginning of `longer` and nothing else.
bool is_beginning(const FoundFile& shorter, const FoundFile& longer, std::span<const std::string_view> inputs) {
    CopyLines a(shorter, inputs);
    CopyLines b(longer, inputs);
    while (a.next()) {
        if (!b.next()) return false;
        if (a.text == b.text) continue;
        return b.text.starts_with(a.text) && !a.next();
    }
    return true;
}

bool is_clean(Format format, std::string_view line) {
    if (format == Format::base64) return is_base64_line(line);
    if (format != Format::uu && format != Format::xx) return true;
    const auto alphabet = format == Format::uu ? uu::Alphabet::uu : uu::Alphabet::xx;
    const uu::DataLine data = uu::judge(alphabet, line);
    return data.clean && (data.fit == uu::Fit::exact || data.fit == uu::Fit::extra || data.bytes == 0);
}

bool has_foreign_lines(const FoundFile& file, std::span<const std::string_view> inputs) {
    for (CopyLines lines(file, inputs); lines.next();) {
        if (!is_clean(file.attachment.format, lines.text)) return true;
    }
    return false;
}

/// Adds `copy`, whose lines differ from all others, to the kept copies.
void keep_copy(PartCopies& copies, std::size_t copy, std::span<const FoundFile> files,
               std::span<const std::string_view> inputs) {
    const auto first = copies.kept.begin();
    const auto last = first + static_cast<std::ptrdiff_t>(std::min(copies.kept.size(), most_compared));
    const auto cut_off =
        std::find_if(first, last, [&](std::size_t kept) { return is_beginning(files[kept], files[copy], inputs); });
    const bool is_cut_off =
        std::any_of(first, last, [&](std::size_t kept) { return is_beginning(files[copy], files[kept], inputs); });
    copies.doubtful = copies.doubtful || is_cut_off || cut_off != last;
    if (is_cut_off) {
        copies.left_out.push_back(copy);
    } else if (cut_off != last) {
        copies.left_out.push_back(std::exchange(*cut_off, copy));
    } else {
        copies.kept.push_back(copy);
    }
}

/// Leaves out copies with foreign lines if there are others.
void prefer_clean(PartCopies& copies, std::span<const FoundFile> files, std::span<const std::string_view> inputs) {
    if (copies.kept.size() < 2) return;
    const auto foreign = std::stable_partition(copies.kept.begin(), copies.kept.end(), [&](std::size_t copy) {
        return !has_foreign_lines(files[copy], inputs);
    });
    if (foreign == copies.kept.begin() || foreign == copies.kept.end()) return;
    copies.doubtful = true;
    std::copy(foreign, copies.kept.end(), std::back_inserter(copies.left_out));
    copies.kept.erase(foreign, copies.kept.end());
}

}  // namespace

PartCopies choose_copies(std::span<const FoundFile> files, std::span<const std::size_t> copies,
                         std::span<const std::string_view> inputs) {
    PartCopies out;
    std::set<std::pair<std::uint64_t, std::uint32_t>> seen;
    for (const std::size_t copy : copies) {
        if (copies.size() == 1 || seen.insert(digest_of(files[copy], inputs)).second) {
            keep_copy(out, copy, files, inputs);
        } else {
            out.left_out.push_back(copy);
        }
    }
    prefer_clean(out, files, inputs);
    return out;
}

void report_copies(Attachment& attachment, const PartCopies& copies, std::uint32_t number, std::uint64_t at_input) {
    const std::string part = "Part " + std::to_string(number);
    const std::optional<std::uint32_t> source =
        attachment.body.empty() ? std::nullopt : std::optional(attachment.body.front().source);
    if (copies.kept.size() > 1) {
        attachment.problems.push_back({ProblemKind::parts_differ,
                                       at_input,
                                       {},
                                       part + " exists in " + std::to_string(copies.kept.size()) +
                                           " forms that differ, and nothing says which belongs to this file",
                                       source});
    } else if (copies.doubtful) {
        attachment.problems.push_back({ProblemKind::damaged_copy,
                                       at_input,
                                       {},
                                       part + " exists more than once; a copy that is damaged or cut off is left out",
                                       source});
    } else if (!copies.left_out.empty()) {
        attachment.problems.push_back(
            {ProblemKind::duplicate_part, at_input, {}, part + " exists more than once, with the same lines", source});
    }
}

}  // namespace quill::codec
