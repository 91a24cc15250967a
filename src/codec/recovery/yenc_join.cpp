#include "codec/recovery/yenc_join.h"

#include "checksum/checksum.h"
#include "codec/yenc/yenc_post.h"
#include "codec/yenc/yenc_rows.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace quill::codec::yenc {
namespace {

constexpr unsigned most_missing_reported = 20;

/// A post among the inputs.
struct Part {
    Post post;
    std::string_view text;
    Range range;  ///< the place of the post

    std::optional<std::uint64_t> first_byte() const { return post.part ? post.part->begin : std::nullopt; }
};

std::optional<Part> read_part(std::span<const std::string_view> inputs, const Range& range) {
    const std::string_view text = inputs[range.source].substr(range.begin, range.end - range.begin);
    std::optional<Post> post = read_post(text);
    if (!post) return std::nullopt;
    return Part{*std::move(post), text, range};
}

/// The common properties of the parts of one file.
struct FileKey {
    std::string_view name;
    std::optional<std::uint64_t> size;

    auto operator<=>(const FileKey&) const = default;
};

/// Identifies the part of its file that a post contains.
struct PartKey {
    std::optional<std::uint64_t> begin;
    std::optional<std::uint64_t> number;  ///< if it does not state its first byte, or has no bytes

    auto operator<=>(const PartKey&) const = default;
};

PartKey key_of(const Post& post) {
    const std::optional<std::uint64_t> begin = post.part ? post.part->begin : std::nullopt;
    const bool placed = begin && post.part->end != *begin - 1;
    return {begin, placed ? std::nullopt : post.begin.part};
}

/// The posts that contain the same part of files of one name and size.
struct SamePart {
    std::size_t count = 0;  ///< how many of the files, from the first, have the part
    std::optional<std::uint32_t> first_crc;
    std::map<std::uint32_t, std::size_t> others;  ///< the file that has it with another CRC
};

/// The files of one name and size during the collection of their parts.
class Gathering {
  public:
    std::vector<std::size_t> files;

    /// Returns the file that `post` belongs to: the one with the CRC of the whole file that it states, else the first
    /// that lacks its part, or has it with no other CRC. May be one more than there are.
    std::size_t place_of(const Post& post) {
        const std::optional<std::uint32_t> whole = post.file_crc();
        if (!whole) return free_place(post);
        const auto known = by_crc_.find(*whole);
        if (known != by_crc_.end()) return known->second;
        const std::size_t place = std::max(free_place(post), claimed_);
        claimed_ = place + 1;
        by_crc_.emplace(*whole, place);
        return std::min(place, files.size());
    }

  private:
    std::size_t free_place(const Post& post) {
        SamePart& part = parts_[key_of(post)];
        const std::optional<std::uint32_t> crc = post.stated_crc();
        if (part.count == 0) {
            part = {1, crc, {}};
            return 0;
        }
        if (!crc || !part.first_crc || *crc == *part.first_crc) return 0;
        const auto [other, is_new] = part.others.emplace(*crc, part.count);
        if (is_new) ++part.count;
        return other->second;
    }

    std::map<PartKey, SamePart> parts_;
    std::map<std::uint32_t, std::size_t> by_crc_;  ///< files by the CRC of the whole stated in a part
    std::size_t claimed_ = 0;                      ///< files before this one have such a CRC, or are skipped
};

void append(FoundFile& whole, FoundFile&& piece) {
    whole.attachment.body.push_back(piece.attachment.body[0]);
    std::move(piece.attachment.problems.begin(), piece.attachment.problems.end(),
              std::back_inserter(whole.attachment.problems));
}

/// Reports that several files have the same name and size: only the CRC of the whole shows which parts belong together.
void report_several(std::vector<FoundFile>& files, const Gathering& gathering) {
    if (gathering.files.size() < 2) return;
    for (const std::size_t file : gathering.files) {
        Attachment& attachment = files[file].attachment;
        if (attachment.body.size() < 2) continue;
        attachment.problems.push_back({ProblemKind::parts_differ,
                                       attachment.body.front().begin,
                                       {},
                                       "Several files have this name and size, and parts may be exchanged"});
    }
}

}  // namespace

void join_posts(std::vector<FoundFile>& files, std::span<const std::string_view> inputs) {
    std::map<FileKey, Gathering> gatherings;
    std::size_t kept = 0;  // of the files; those after them are not examined yet
    for (std::size_t i = 0; i < files.size(); ++i) {
        FoundFile& file = files[i];
        std::optional<Part> part;
        if (file.attachment.format == Format::yenc && file.attachment.body.size() == 1) {
            part = read_part(inputs, file.attachment.body[0]);
        }
        if (part && part->post.is_part()) {
            const Post& post = part->post;
            Gathering& gathering = gatherings[{post.begin.name, post.file_size()}];
            const std::size_t place = gathering.place_of(post);
            if (place < gathering.files.size()) {
                append(files[gathering.files[place]], std::move(file));
                continue;
            }
            gathering.files.push_back(kept);
        }
        if (kept != i) files[kept] = std::move(file);
        ++kept;
    }
    files.resize(kept);
    for (const auto& [key, gathering] : gatherings) report_several(files, gathering);
}

namespace {

/// Returns true if the post states the result after removing dots from its lines, and not the result with them. If its
/// CRC matches neither, its size decides.
bool dots_were_added(const Part& part) {
    if (!dots_look_added(part.text, part.post)) return false;
    const Data kept = *decode_data(part.text, part.post, false);
    if (agrees(part.post, kept)) return false;
    const Data taken_off = *decode_data(part.text, part.post, true);
    const std::optional<std::uint64_t> size = part.post.stated_size();
    return agrees(part.post, taken_off) || (size && kept.size != *size && taken_off.size == *size);
}

Data data_of(const Part& part) {
    const AskDotted dotted = [&] { return dots_were_added(part); };
    return *decode_data(part.text, part.post, dotted);
}

bool has_no_number(const Part& part) {
    return !part.post.begin.part;
}

/// Part numbers that no post has.
struct NumberGap {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    const Part* at = nullptr;  ///< the part that follows, or the last part of all
    bool at_end = false;       ///< no part follows
};

/// Assembles the parts of one file for the sink.
class Assembly {
  public:
    /// `dots_doubled`: the newsreader is known to double dots.
    Assembly(std::vector<Part> parts, bool dots_doubled, const OnRead& on_read, Sink& sink)
        : parts_(std::move(parts)), dots_doubled_(dots_doubled), on_read_(on_read), sink_(sink) {
        for (const Part& part : parts_) input_bytes_ += part.text.size();
    }

    void run() {
        sort();
        drop_duplicates();
        find_whole_crc();
        for (const Part& part : parts_) {
            if (!decode(part)) return;
        }
        check_whole();
        if (all_vouched_for_) sink_.vouch();
    }

  private:
    void sort();
    void drop_duplicates();
    void choose_copy(Part& before, const Part& copy);
    void find_whole_crc();
    bool decode(const Part& part);
    bool begin_part(const Part& part);
    bool fill_gap(std::uint64_t gap);
    bool put(std::string_view bytes);
    void verify_part(const Part& part, const Data& data);
    void check_whole();
    std::vector<NumberGap> number_gaps() const;
    std::optional<std::string> what_is_missing() const;
    bool report_number_gaps();
    bool check_parts(bool proved);
    bool end_is_unknown() const;

    std::vector<Part> parts_;
    bool dots_doubled_;
    const OnRead& on_read_;
    Sink& sink_;
    std::uint64_t input_bytes_ = 0;

    bool placed_ = false;     ///< each part states its place
    bool alone_ = false;      ///< there is only one part
    bool has_gap_ = false;    ///< bytes between the parts are missing
    bool in_one_row_ = true;  ///< each part directly follows the previous one
    bool all_vouched_for_ = true;
    std::uint64_t zeros_ = 0;
    std::uint64_t passed_over_ = 0;  ///< bytes at the beginning of the current part that are already written
    std::optional<std::uint32_t> whole_crc_;
    std::uint32_t crc_ = 0;
};

/// Sorts into file order: by first bytes if all parts state them, else by numbers if all have one.
void Assembly::sort() {
    const auto all = [&](auto&& holds) { return std::all_of(parts_.begin(), parts_.end(), holds); };
    placed_ = all([](const Part& part) { return part.first_byte().value_or(0) >= 1; });
    if (placed_) {
        std::stable_sort(parts_.begin(), parts_.end(),
                         [](const Part& a, const Part& b) { return *a.first_byte() < *b.first_byte(); });
    } else if (all([](const Part& part) { return part.post.begin.part.has_value(); })) {
        std::stable_sort(parts_.begin(), parts_.end(),
                         [](const Part& a, const Part& b) { return *a.post.begin.part < *b.post.begin.part; });
    }
}

/// Keeps one of several copies of a part: the first good one, else the first.
void Assembly::drop_duplicates() {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        Part& part = parts_[i];
        const PartKey key = key_of(part.post);
        if (kept == 0 || key == PartKey{} || key_of(parts_[kept - 1].post) != key) {
            parts_[kept++] = part;
        } else {
            choose_copy(parts_[kept - 1], part);
        }
    }
    parts_.erase(parts_.begin() + static_cast<std::ptrdiff_t>(kept), parts_.end());
    alone_ = parts_.size() == 1;
}

/// Replaces `before` with `copy` if `before` is bad; reports copies that are both good but differ.
void Assembly::choose_copy(Part& before, const Part& copy) {
    const Data first = data_of(before);
    const Data second = data_of(copy);
    const bool first_good = agrees(before.post, first);
    const bool second_good = agrees(copy.post, second);
    sink_.read_from(copy.range.source);
    if (first == second) {
        sink_.report(ProblemKind::duplicate_part, copy.range.begin);
    } else if (first_good == second_good) {
        sink_.report(ProblemKind::parts_differ, copy.range.begin,
                     "This part exists in two forms that differ; the first is used");
    } else {
        sink_.report(ProblemKind::damaged_copy, copy.range.begin);
    }
    if (!first_good && second_good) before = copy;
}

/// Finds the CRC of the whole file, if the parts that state one agree on it.
void Assembly::find_whole_crc() {
    std::set<std::uint32_t> stated;
    std::set<std::uint32_t> beside_own;
    for (const Part& part : parts_) {
        if (part.post.is_part() && part.post.end && part.post.end->crc32) stated.insert(*part.post.end->crc32);
        if (const auto crc = part.post.file_crc()) beside_own.insert(*crc);
    }
    if (stated.size() == 1) whole_crc_ = *stated.begin();
    if (beside_own.size() < 2) return;
    sink_.read_from(parts_.front().range.source);
    sink_.report(ProblemKind::parts_differ, parts_.front().range.begin,
                 "The parts state different CRCs of the whole file; they are of different files");
}

bool Assembly::put(std::string_view bytes) {
    const auto known = static_cast<std::size_t>(std::min<std::uint64_t>(passed_over_, bytes.size()));
    bytes.remove_prefix(known);
    passed_over_ -= known;
    if (whole_crc_) crc_ = crc32(crc_, bytes);
    sink_.put(bytes);
    return !sink_.stopped();
}

bool Assembly::fill_gap(std::uint64_t gap) {
    const std::string zeros(64 * 1024, '\0');
    for (; gap > 0 && !sink_.stopped(); gap -= std::min<std::uint64_t>(gap, zeros.size())) {
        sink_.put(std::string_view(zeros).substr(0, gap));
    }
    return !sink_.stopped();
}

/// Moves the sink to the place of the part's first byte. Reports what is missing before it, or duplicated.
bool Assembly::begin_part(const Part& part) {
    passed_over_ = 0;
    if (!placed_ || alone_) return true;
    const std::uint64_t wanted = *part.first_byte() - 1;
    const std::uint64_t at = sink_.size();
    if (wanted == at) return true;
    in_one_row_ = false;
    if (wanted < at) {
        passed_over_ = at - wanted;
        sink_.report(ProblemKind::overlapping_parts, part.range.begin,
                     "This part overlaps the one before it by " + std::to_string(passed_over_) + " bytes");
        return true;
    }
    has_gap_ = true;
    const std::uint64_t gap = wanted - at;
    const bool in_proportion =
        gap <= most_zeros - std::min(zeros_, most_zeros) || (zeros_ + gap) / most_zeros_per_byte <= input_bytes_;
    sink_.report(ProblemKind::missing_part, part.range.begin,
                 std::to_string(gap) + " bytes before this part are missing" +
                     (in_proportion ? " and are zeros in the result" : " and are left out of the result"));
    if (!in_proportion) return true;
    zeros_ += gap;
    return fill_gap(gap);
}

bool Assembly::decode(const Part& part) {
    sink_.read_from(part.range.source);
    if (!begin_part(part)) return false;
    const AskDotted dotted = [&] {
        const bool by_newsreader = dots_doubled_ && !agrees(part.post, *decode_data(part.text, part.post, false));
        if (!by_newsreader && !dots_were_added(part)) return false;
        sink_.report(ProblemKind::dots_added, part.range.begin);
        return true;
    };
    const TakeBytes take = [&](std::string_view bytes, std::size_t read_to) {
        return put(bytes) && (!on_read_ || on_read_(part.range.source, part.range.begin + read_to));
    };
    const std::optional<Data> data = decode_data(part.text, part.post, dotted, take);
    if (!data) return false;
    verify_part(part, *data);
    return true;
}

void Assembly::verify_part(const Part& part, const Data& data) {
    const Verification verification = verify(part.post, data);
    for (const Problem& problem : verification.problems) {
        sink_.report(problem.kind, part.range.begin + problem.at_input, problem.text);
    }
    all_vouched_for_ = all_vouched_for_ && verification.vouched_for;
    if (parts_.size() == 1 && !part.post.is_part() && verification.crc_agrees) sink_.prove();
    if (part.post.stated_crc() || !part.post.end) return;
    if (has_tabs_for_blanks(part.text, part.post)) sink_.report(ProblemKind::bad_character, part.range.begin);
    if (data.even_rows || !has_uneven_rows(part.text, part.post)) return;
    sink_.report(ProblemKind::uneven_lines, part.range.begin);
}

/// Returns the parts that are missing by the numbers of those that exist and their highest total. Parts without a
/// number only count.
std::vector<NumberGap> Assembly::number_gaps() const {
    std::map<std::uint64_t, const Part*> numbered;
    std::uint64_t total = 0;
    for (const Part& part : parts_) {
        total = std::max(total, part.post.begin.total.value_or(0));
        if (part.post.begin.part) numbered.emplace(*part.post.begin.part, &part);
    }
    const Part& last = parts_.back();
    if (numbered.empty() || std::any_of(parts_.begin(), parts_.end(), has_no_number)) {
        if (total <= parts_.size()) return {};
        return {{parts_.size() + 1, total, &last, true}};
    }
    std::vector<NumberGap> gaps;
    std::uint64_t wanted = std::min<std::uint64_t>(1, numbered.begin()->first);
    if (wanted == 0 && total > 0) --total;  // numbered from 0
    for (const auto& [number, part] : numbered) {
        if (number > wanted) gaps.push_back({wanted, number - 1, part, false});
        wanted = number + 1;
    }
    if (total >= wanted && wanted > 0) gaps.push_back({wanted, total, &last, true});
    return gaps;
}

/// Returns what the places and the sizes of the parts show to be missing at the file's end, or around its only part.
std::optional<std::string> Assembly::what_is_missing() const {
    const Post& last = parts_.back().post;
    if (!last.is_part()) return std::nullopt;
    const std::uint64_t begin = alone_ && placed_ ? *parts_.back().first_byte() - 1 : 0;
    const std::optional<std::uint64_t> size = last.file_size();
    const bool by_size = size && *size > begin + sink_.size();
    if (alone_ && (begin > 0 || by_size || !number_gaps().empty())) return "This part is all there is of the file";
    if (by_size) return "Parts at the end of the file are missing";
    return std::nullopt;
}

/// Reports the missing numbers; returns whether there are any. Bytes that are missing between placed parts are already
/// reported.
bool Assembly::report_number_gaps() {
    if (!parts_.back().post.is_part() || (placed_ && has_gap_)) return has_gap_;
    const std::vector<NumberGap> gaps = number_gaps();
    for (std::size_t i = 0; i < gaps.size() && i < most_missing_reported; ++i) {
        const NumberGap& gap = gaps[i];
        sink_.read_from(gap.at->range.source);
        const std::string first = std::to_string(gap.first);
        sink_.report(ProblemKind::missing_part, gap.at_end ? gap.at->range.end : gap.at->range.begin,
                     gap.first == gap.last ? "Part " + first + " is missing"
                                           : "Parts " + first + " to " + std::to_string(gap.last) + " are missing");
    }
    return !gaps.empty();
}

/// Returns true if nothing states the end of the file: a size that the parts exceed does not count.
bool Assembly::end_is_unknown() const {
    const auto says = [&](const Part& part) {
        const std::optional<std::uint64_t> size = part.post.file_size();
        return part.post.begin.total || (size && *size >= sink_.size());
    };
    return parts_.back().post.is_part() && std::none_of(parts_.begin(), parts_.end(), says);
}

/// Reports parts that are missing, unless the CRC of the whole proves that the file is complete. Returns whether there
/// are any.
bool Assembly::check_parts(bool proved) {
    const Part& last = parts_.back();
    if (const std::optional<std::string> missing = what_is_missing()) {
        sink_.report(ProblemKind::missing_part, last.range.end, *missing);
        return true;
    }
    if (proved) return false;
    if (report_number_gaps()) return true;
    if (end_is_unknown()) {
        sink_.report(ProblemKind::unnumbered_parts, last.range.end,
                     "Nothing says how long the file is; parts at its end may be missing");
    }
    return false;
}

/// Checks what concerns the file as a whole: its parts, its own CRC.
void Assembly::check_whole() {
    const bool comparable = whole_crc_ && in_one_row_;
    const bool agrees = comparable && crc_ == *whole_crc_;
    const bool proved = agrees && !alone_;
    const bool missing = check_parts(proved);
    if (agrees) all_vouched_for_ = true;
    if (proved) sink_.prove();
    if (!comparable || agrees || missing) return;
    sink_.report(
        ProblemKind::bad_crc, parts_.back().range.end,
        "The text states the CRC " + hexadecimal(*whole_crc_) + " of the whole file, and it is " + hexadecimal(crc_));
}

}  // namespace
}  // namespace quill::codec::yenc

namespace quill::codec {

void decode_yenc(const Attachment& attachment, std::span<const std::string_view> inputs, const OnRead& on_read,
                 Sink& sink) {
    std::vector<yenc::Part> parts;
    parts.reserve(attachment.body.size());
    for (const Range& range : attachment.body) {
        if (std::optional<yenc::Part> part = yenc::read_part(inputs, range)) parts.push_back(*part);
    }
    if (!parts.empty()) yenc::Assembly(std::move(parts), attachment.dots_doubled, on_read, sink).run();
}

}  // namespace quill::codec
