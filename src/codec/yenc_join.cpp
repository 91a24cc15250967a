#include "codec/yenc_join.h"

#include "codec/checksum.h"
#include "codec/yenc_post.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace quill::codec::yenc {
namespace {

constexpr std::uint64_t gap_always_left = 1ULL << 30U;  // bytes
constexpr std::uint64_t gap_per_byte_of_input = 64;

/// A post among the inputs.
struct Part {
    Post post;              ///< offsets are into `text`
    std::string_view text;  ///< the post
    Range range;            ///< where that stands

    std::optional<std::uint64_t> first_byte() const { return post.part ? post.part->begin : std::nullopt; }
};

std::optional<Part> read_part(std::span<const std::string_view> inputs, const Range& range) {
    const std::string_view text = inputs[range.source].substr(range.begin, range.end - range.begin);
    std::optional<Post> post = read_post(text, 0);
    if (!post) return std::nullopt;
    return Part{*std::move(post), text, range};
}

/// What the parts of one file have in common.
struct FileKey {
    std::string_view name;
    std::uint64_t size = 0;

    auto operator<=>(const FileKey&) const = default;
};

/// What tells a part of a file from its other parts, and from a part of another file of the same name and size.
struct PartKey {
    std::optional<std::uint64_t> begin;
    std::optional<std::uint64_t> number;

    auto operator<=>(const PartKey&) const = default;
};

PartKey key_of(const Post& post) {
    const std::optional<std::uint64_t> begin = post.part ? post.part->begin : std::nullopt;
    return {begin, begin ? std::nullopt : post.begin.part};
}

std::optional<std::uint32_t> checksum_of(const Post& post) {
    return post.end ? post.end->pcrc32 : std::nullopt;
}

/// An attachment that parts are gathered in.
struct Gathering {
    std::size_t attachment = 0;
    std::map<PartKey, std::optional<std::uint32_t>> checksums;

    /// Whether `post` can be of the same file as what is here.
    bool takes(const Post& post) const {
        const auto same_part = checksums.find(key_of(post));
        if (same_part == checksums.end()) return true;
        const std::optional<std::uint32_t> stated = checksum_of(post);
        return !stated || !same_part->second || *stated == *same_part->second;
    }
};

}  // namespace

void join_parts(std::span<const std::string_view> inputs, std::vector<Attachment>& attachments) {
    std::map<FileKey, std::vector<Gathering>> files;
    std::vector<Attachment> joined;
    for (Attachment& attachment : attachments) {
        const std::optional<Part> part = attachment.format == Format::yenc && attachment.body.size() == 1
                                             ? read_part(inputs, attachment.body[0])
                                             : std::nullopt;
        if (!part || !part->post.is_part()) {
            joined.push_back(std::move(attachment));
            continue;
        }
        const Post& post = part->post;
        std::vector<Gathering>& candidates = files[{post.begin.name, post.begin.size.value_or(0)}];
        auto gathering = std::find_if(candidates.begin(), candidates.end(),
                                      [&](const Gathering& candidate) { return candidate.takes(post); });
        if (gathering == candidates.end()) {
            gathering = candidates.insert(gathering, Gathering{joined.size(), {}});
            joined.push_back(std::move(attachment));
        } else {
            Attachment& whole = joined[gathering->attachment];
            whole.body.push_back(attachment.body[0]);
            whole.problems.insert(whole.problems.end(), attachment.problems.begin(), attachment.problems.end());
        }
        gathering->checksums.try_emplace(key_of(post), checksum_of(post));
    }
    attachments = std::move(joined);
}

namespace {

/// Whether the post states what comes out once dots are taken off its lines, and not what comes out with them.
bool dots_were_added(const Part& part) {
    return part.post.may_be_stuffed && !agrees(part.post, *decode_data(part.text, part.post, false)) &&
           agrees(part.post, *decode_data(part.text, part.post, true));
}

bool is_good(const Part& part) {
    return agrees(part.post, *decode_data(part.text, part.post, dots_were_added(part)));
}

/// The parts of one file on their way to the output.
class Assembly {
  public:
    Assembly(std::vector<Part> parts, Outcome& outcome, const WriteAt& write)
        : parts_(std::move(parts)), outcome_(outcome), write_(write) {
        for (const Part& part : parts_) input_bytes_ += part.text.size();
    }

    void run() {
        sort();
        drop_duplicates();
        collect_whole_checksum();
        for (const Part& part : parts_) {
            if (!decode(part)) return;
        }
        check_whole();
        outcome_.size = furthest_;
        outcome_.verdict = verdict();
    }

  private:
    void problem(Grade grade, std::string kind, std::uint64_t at_input, std::optional<std::uint64_t> at_output,
                 std::string text) {
        outcome_.problems.push_back({grade, std::move(kind), at_input, at_output, std::move(text)});
    }

    /// Into the file's order: by first bytes where all parts state them, else by numbers where all have one.
    void sort() {
        const auto all = [&](auto&& states) { return std::all_of(parts_.begin(), parts_.end(), states); };
        placed_ = all([](const Part& part) { return part.first_byte().value_or(0) >= 1; });
        if (placed_) {
            std::stable_sort(parts_.begin(), parts_.end(),
                             [](const Part& a, const Part& b) { return *a.first_byte() < *b.first_byte(); });
        } else if (all([](const Part& part) { return part.post.begin.part.has_value(); })) {
            std::stable_sort(parts_.begin(), parts_.end(),
                             [](const Part& a, const Part& b) { return *a.post.begin.part < *b.post.begin.part; });
        }
    }

    /// Leaves one of the parts that are there several times: the first that is good, else the first.
    void drop_duplicates() {
        std::vector<Part> kept;
        for (Part& part : parts_) {
            const bool again = !kept.empty() && part.post.is_part() && key_of(kept.back().post) == key_of(part.post) &&
                               key_of(part.post) != PartKey{};
            if (!again) {
                kept.push_back(std::move(part));
                continue;
            }
            problem(Grade::repaired, "duplicate-part", part.range.begin, std::nullopt,
                    "this part is there more than once");
            if (!is_good(kept.back()) && is_good(part)) kept.back() = std::move(part);
        }
        parts_ = std::move(kept);
        alone_ = parts_.size() == 1;
    }

    /// The CRC of the whole file, where the parts that state one agree on it.
    void collect_whole_checksum() {
        std::set<std::uint32_t> stated;
        for (const Part& part : parts_) {
            if (part.post.end && part.post.end->crc32) stated.insert(*part.post.end->crc32);
        }
        if (stated.size() == 1) whole_crc_ = *stated.begin();
    }

    /// Where the part's first byte goes. Says what is missing before it, or there twice.
    std::uint64_t place(const Part& part) {
        if (!placed_ || alone_) return furthest_;
        const std::uint64_t wanted = *part.first_byte() - 1;
        if (wanted == furthest_) return wanted;
        in_one_row_ = false;
        if (wanted < furthest_) {
            problem(Grade::damaged, "overlapping-parts", part.range.begin, wanted,
                    "this part overlaps the one before it by " + std::to_string(furthest_ - wanted) + " bytes");
            return wanted;
        }
        const std::uint64_t gap = wanted - furthest_;
        gaps_ += gap;
        const bool in_proportion = gaps_ <= gap_always_left || gaps_ / gap_per_byte_of_input <= input_bytes_;
        missing(part.range.begin, std::to_string(gap) + " bytes before this part are missing" +
                                      (in_proportion ? ", and are zeros here" : ", and are left out here"));
        return in_proportion ? wanted : furthest_;
    }

    void missing(std::uint64_t at_input, std::string text) {
        problem(Grade::lost, "missing-part", at_input, furthest_, std::move(text));
        incomplete_ = true;
    }

    bool decode(const Part& part) {
        const Post& post = part.post;
        const bool dotted = dots_were_added(part);
        if (dotted) {
            problem(Grade::repaired, "dots-added", part.range.begin, furthest_, "dots added to lines were taken off");
        }
        const std::uint64_t begin = place(part);
        std::uint64_t at = begin;
        const TakeBytes take = [&](std::string_view bytes) {
            if (whole_crc_ && in_one_row_) crc_ = crc32(crc_, bytes);
            if (write_ && !write_(at, bytes)) return false;
            at += bytes.size();
            return true;
        };
        // Behind a part that breaks off anything may stand; what it states is all that can be of it.
        const std::optional<std::uint64_t> size = post.stated_size();
        const std::optional<Data> data = post.end || !size ? decode_data(part.text, post, dotted, take)
                                                           : decode_data(part.text, post, dotted, take, *size);
        if (!data) return false;
        furthest_ = std::max(furthest_, at);
        check_part(part, begin, *data);
        return true;
    }

    void check_part(const Part& part, std::uint64_t begin, const Data& data) {
        Verification verification = verify(part.post, data, part.range.begin, begin);
        std::move(verification.problems.begin(), verification.problems.end(), std::back_inserter(outcome_.problems));
        if (!verification.complete) incomplete_ = true;
        if (!verification.vouched_for) all_vouched_for_ = false;
    }

    /// What can be said only of the file: bytes missing at its end, its own CRC.
    void check_whole() {
        const Part& last = parts_.back();
        const std::uint64_t behind = last.range.end;
        const std::optional<std::uint64_t> size = last.post.begin.size;
        const std::optional<std::uint64_t> total = last.post.begin.total;
        const std::uint64_t before = alone_ && placed_ ? *last.first_byte() - 1 : 0;
        if (before > 0 || (placed_ && size && *size > furthest_ && !incomplete_) ||
            (!placed_ && total && parts_.size() < *total)) {
            missing(behind, alone_ ? "this part is all there is of the file" : "the end of the file is missing");
        }
        if (!whole_crc_ || !last.post.is_part() || incomplete_ || !in_one_row_) return;
        if (crc_ == *whole_crc_) {
            all_vouched_for_ = true;
        } else {
            problem(Grade::damaged, "bad-crc", behind, std::nullopt,
                    "the CRC of the whole file is " + hexadecimal(crc_) + ", stated is " + hexadecimal(*whole_crc_));
        }
    }

    Verdict verdict() const {
        if (incomplete_) return Verdict::incomplete;
        const bool damaged = std::any_of(outcome_.problems.begin(), outcome_.problems.end(),
                                         [](const Problem& problem) { return problem.grade != Grade::repaired; });
        if (damaged) return Verdict::damaged;
        return all_vouched_for_ ? Verdict::verified : Verdict::whole;
    }

    std::vector<Part> parts_;
    Outcome& outcome_;
    const WriteAt& write_;
    std::uint64_t input_bytes_ = 0;

    bool placed_ = false;     ///< each part says where it goes
    bool alone_ = false;      ///< there is one part
    bool in_one_row_ = true;  ///< each part went right behind the one before
    bool incomplete_ = false;
    bool all_vouched_for_ = true;
    std::uint64_t furthest_ = 0;
    std::uint64_t gaps_ = 0;
    std::optional<std::uint32_t> whole_crc_;
    std::uint32_t crc_ = 0;
};

}  // namespace

Outcome decode_file(std::span<const std::string_view> inputs, const Attachment& attachment, const WriteAt& write) {
    Outcome outcome;
    outcome.problems = attachment.problems;
    std::vector<Part> parts;
    for (const Range& range : attachment.body) {
        if (std::optional<Part> part = read_part(inputs, range)) parts.push_back(*std::move(part));
    }
    if (parts.empty()) {
        outcome.verdict = Verdict::incomplete;
        return outcome;
    }
    Assembly(std::move(parts), outcome, write).run();
    return outcome;
}

}  // namespace quill::codec::yenc
