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

/// A post among the inputs.
struct Part {
    Post post;
    std::string_view text;
    Range range;  ///< where that stands

    std::optional<std::uint64_t> first_byte() const { return post.part ? post.part->begin : std::nullopt; }
};

std::optional<Part> read_part(std::span<const std::string_view> inputs, const Range& range) {
    const std::string_view text = inputs[range.source].substr(range.begin, range.end - range.begin);
    std::optional<Post> post = read_post(text);
    if (!post) return std::nullopt;
    return Part{*std::move(post), text, range};
}

/// What the parts of one file have in common.
struct FileKey {
    std::string_view name;
    std::optional<std::uint64_t> size;

    auto operator<=>(const FileKey&) const = default;
};

/// Which part of its file a post holds.
struct PartKey {
    std::optional<std::uint64_t> begin;
    std::optional<std::uint64_t> number;  ///< where it does not state its first byte

    auto operator<=>(const PartKey&) const = default;
};

PartKey key_of(const Post& post) {
    const std::optional<std::uint64_t> begin = post.part ? post.part->begin : std::nullopt;
    return {begin, begin ? std::nullopt : post.begin.part};
}

/// The posts that hold the same part of files of one name and size.
struct SamePart {
    std::size_t count = 0;  ///< of the files that have the part: the first ones
    std::optional<std::uint32_t> first_crc;
    std::map<std::uint32_t, std::size_t> others;  ///< which file has it with another CRC
};

/// Files of one name and size that parts are gathered in.
struct Gathering {
    std::vector<std::size_t> files;
    std::map<PartKey, SamePart> parts;

    /// Which of the files `post` goes to: the first that lacks its part, or has it with no other CRC. May be one more
    /// than there are.
    std::size_t place_of(const Post& post) {
        SamePart& part = parts[key_of(post)];
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
};

void append(FoundFile& whole, FoundFile&& piece) {
    whole.attachment.body.push_back(piece.attachment.body[0]);
    std::move(piece.attachment.problems.begin(), piece.attachment.problems.end(),
              std::back_inserter(whole.attachment.problems));
}

}  // namespace

void join_posts(std::vector<FoundFile>& files, std::span<const std::string_view> inputs) {
    std::map<FileKey, Gathering> gatherings;
    std::size_t kept = 0;  // of the files; those behind are still to be looked at
    for (std::size_t i = 0; i < files.size(); ++i) {
        FoundFile& file = files[i];
        std::optional<Part> part;
        if (file.attachment.format == Format::yenc && file.attachment.body.size() == 1) {
            part = read_part(inputs, file.attachment.body[0]);
        }
        if (part && part->post.is_part()) {
            const Post& post = part->post;
            Gathering& gathering = gatherings[{post.begin.name, post.begin.size}];
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
}

namespace {

/// Whether the post states what comes out once dots are taken off its lines, and not what comes out with them.
bool dots_were_added(const Part& part, const ReadText& read) {
    return dots_look_added(part.text, part.post, read) &&
           !agrees(part.post, *decode_data(part.text, part.post, false, {}, read)) &&
           agrees(part.post, *decode_data(part.text, part.post, true, {}, read));
}

bool is_good(const Part& part, const ReadText& read) {
    const AskDotted dotted = [&] { return dots_were_added(part, read); };
    return agrees(part.post, *decode_data(part.text, part.post, dotted, {}, read));
}

/// The parts of one file on their way to the sink.
class Assembly {
  public:
    /// `dots_doubled`: the newsreader is known for it.
    Assembly(std::vector<Part> parts, bool dots_doubled, const OnRead& on_read, const ReadInput& read_input, Sink& sink)
        : parts_(std::move(parts)),
          dots_doubled_(dots_doubled),
          on_read_(on_read),
          read_input_(read_input),
          sink_(sink) {
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
    void find_whole_crc();
    ReadText reader(const Part& part) const;
    bool decode(const Part& part);
    bool begin_part(const Part& part);
    bool fill_gap(std::uint64_t gap);
    bool put(std::string_view bytes);
    void verify_part(const Part& part, const Data& data);
    void check_whole();
    std::optional<std::string> what_is_missing() const;

    std::vector<Part> parts_;
    bool dots_doubled_;
    const OnRead& on_read_;
    const ReadInput& read_input_;
    Sink& sink_;
    std::uint64_t input_bytes_ = 0;

    bool placed_ = false;     ///< each part says where it goes
    bool alone_ = false;      ///< there is one part
    bool in_one_row_ = true;  ///< each part goes right behind the one before
    bool all_vouched_for_ = true;
    std::uint64_t zeros_ = 0;
    std::uint64_t passed_over_ = 0;  ///< bytes at the beginning of the part at hand that are there already
    std::optional<std::uint32_t> whole_crc_;
    std::uint32_t crc_ = 0;
};

/// Into the file's order: by first bytes where all parts state them, else by numbers where all have one.
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

/// Leaves one of the parts that are there several times: the first that is good, else the first.
void Assembly::drop_duplicates() {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        Part& part = parts_[i];
        const PartKey key = key_of(part.post);
        if (kept == 0 || key == PartKey{} || key_of(parts_[kept - 1].post) != key) {
            parts_[kept++] = part;
            continue;
        }
        Part& before = parts_[kept - 1];
        sink_.report(Grade::repaired, "duplicate-part", part.range.begin, "This part is there more than once");
        if (!is_good(before, reader(before)) && is_good(part, reader(part))) before = part;
    }
    parts_.erase(parts_.begin() + static_cast<std::ptrdiff_t>(kept), parts_.end());
    alone_ = parts_.size() == 1;
}

/// The CRC of the whole file, where the parts that state one agree on it.
void Assembly::find_whole_crc() {
    std::set<std::uint32_t> stated;
    for (const Part& part : parts_) {
        if (part.post.is_part() && part.post.end && part.post.end->crc32) stated.insert(*part.post.end->crc32);
    }
    if (stated.size() == 1) whole_crc_ = *stated.begin();
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

/// Brings the sink to where the part's first byte goes. Says what is missing before it, or there twice.
bool Assembly::begin_part(const Part& part) {
    passed_over_ = 0;
    if (!placed_ || alone_) return true;
    const std::uint64_t wanted = *part.first_byte() - 1;
    const std::uint64_t at = sink_.size();
    if (wanted == at) return true;
    in_one_row_ = false;
    if (wanted < at) {
        passed_over_ = at - wanted;
        sink_.report(Grade::damaged, "overlapping-parts", part.range.begin,
                     "This part overlaps the one before it by " + std::to_string(passed_over_) + " bytes");
        return true;
    }
    const std::uint64_t gap = wanted - at;
    const bool in_proportion =
        gap <= most_zeros - std::min(zeros_, most_zeros) || (zeros_ + gap) / most_zeros_per_byte <= input_bytes_;
    sink_.report(Grade::lost, "missing-part", part.range.begin,
                 std::to_string(gap) + " bytes before this part are missing" +
                     (in_proportion ? " and are zeros in the result" : " and are left out of the result"));
    if (!in_proportion) return true;
    zeros_ += gap;
    return fill_gap(gap);
}

ReadText Assembly::reader(const Part& part) const {
    if (!read_input_) return {};
    return [this, range = part.range](std::size_t at, char* out, std::size_t size) {
        return read_input_(range.source, range.begin + at, out, size);
    };
}

bool Assembly::decode(const Part& part) {
    const ReadText read = reader(part);
    if (!begin_part(part)) return false;
    const AskDotted dotted = [&] {
        const bool by_newsreader =
            dots_doubled_ && !agrees(part.post, *decode_data(part.text, part.post, false, {}, read));
        if (!by_newsreader && !dots_were_added(part, read)) return false;
        sink_.report(Grade::repaired, "dots-added", part.range.begin, "Dots that were added to lines are taken off");
        return true;
    };
    const TakeBytes take = [&](std::string_view bytes, std::size_t read_to) {
        return put(bytes) && (!on_read_ || on_read_(part.range.source, part.range.begin + read_to));
    };
    const std::optional<Data> data = decode_data(part.text, part.post, dotted, take, read);
    if (!data) return false;
    verify_part(part, *data);
    return true;
}

void Assembly::verify_part(const Part& part, const Data& data) {
    const Verification verification = verify(part.post, data);
    for (const Problem& problem : verification.problems) {
        sink_.report(problem.grade, problem.kind, part.range.begin + problem.at_input, problem.text);
    }
    all_vouched_for_ = all_vouched_for_ && verification.vouched_for;
}

std::optional<std::string> Assembly::what_is_missing() const {
    const Post& last = parts_.back().post;
    if (!last.is_part()) return std::nullopt;
    const std::uint64_t begin = alone_ && placed_ ? *parts_.back().first_byte() - 1 : 0;
    const bool behind =
        placed_ ? last.begin.size.value_or(0) > begin + sink_.size() : last.begin.total.value_or(0) > parts_.size();
    if (begin > 0 || (alone_ && behind)) return "This part is all there is of the file";
    if (behind) return "Parts at the end of the file are missing";
    return std::nullopt;
}

/// What can be said only of the file: parts missing at its end, its own CRC.
void Assembly::check_whole() {
    const Part& last = parts_.back();
    if (const auto missing = what_is_missing()) {
        sink_.report(Grade::lost, "missing-part", last.range.end, *missing);
        return;
    }
    if (!whole_crc_ || !in_one_row_) return;
    if (crc_ == *whole_crc_) {
        all_vouched_for_ = true;
    } else {
        sink_.report(Grade::damaged, "bad-crc", last.range.end,
                     "The text states the CRC " + hexadecimal(*whole_crc_) + " of the whole file, and it is " +
                         hexadecimal(crc_));
    }
}

}  // namespace
}  // namespace quill::codec::yenc

namespace quill::codec {

void decode_yenc(const Attachment& attachment, std::span<const std::string_view> inputs, const OnRead& on_read,
                 const ReadInput& read_input, Sink& sink) {
    std::vector<yenc::Part> parts;
    parts.reserve(attachment.body.size());
    for (const Range& range : attachment.body) {
        if (std::optional<yenc::Part> part = yenc::read_part(inputs, range)) parts.push_back(*part);
    }
    if (!parts.empty()) yenc::Assembly(std::move(parts), attachment.dots_doubled, on_read, read_input, sink).run();
}

}  // namespace quill::codec
