#include "pics/placement.h"

#include "codec/recovery/file_signature.h"
#include "files/path.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quill::pics {
namespace {

using report::Verdict;

/// Whether the bytes at a place look like the beginning of a picture.
enum class Look : std::uint8_t {
    picture,  ///< they do
    unknown,  ///< no evidence either way
    other     ///< the name promises a kind of picture that begins differently
};

bool begins_with_mark(std::string_view name) {
    constexpr std::array<std::string_view, 9> extensions = {".jpg", ".jpeg", ".png",  ".gif", ".bmp",
                                                            ".dib", ".tif",  ".tiff", ".webp"};
    const std::string extension = text::to_lower(name.substr(files::extension_at(name)));
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

/// Places the pictures of an album whose sizes do not add up to its bytes.
class Reconciliation {
  public:
    Reconciliation(std::string_view album, const Directory& directory, Form form)
        : album_(album), directory_(directory), form_(form), count_(directory.slots.size()) {}

    std::vector<Place> run();

  private:
    std::optional<std::uint64_t> size_of(std::size_t i) const;
    Look look(std::size_t i, std::uint64_t at) const;
    void place_from_front();
    void place_from_back();
    std::uint64_t end_of_front() const;
    Place at_front(std::size_t i) const;

    std::string_view album_;
    const Directory& directory_;
    Form form_;
    std::size_t count_;
    std::vector<std::uint64_t> front_;  ///< beginnings of the first pictures
    std::vector<std::uint64_t> back_;   ///< beginnings of the last pictures, the last one first
};

std::optional<std::uint64_t> Reconciliation::size_of(std::size_t i) const {
    const std::optional<Record>& record = directory_.slots[i].record;
    return record ? record->size : std::nullopt;
}

Look Reconciliation::look(std::size_t i, std::uint64_t at) const {
    if (size_of(i) == std::uint64_t{0}) return Look::unknown;
    const codec::FileSignature* signature = codec::signature_of(album_.substr(at, codec::longest_signature));
    if (signature != nullptr && signature->kind == codec::FileKind::picture) return Look::picture;
    const std::optional<Record>& record = directory_.slots[i].record;
    if (!record) return Look::unknown;
    const std::string_view name = form_ == Form::plain ? record->stored_name : picture_name(record->stored_name);
    return begins_with_mark(name) ? Look::other : Look::unknown;
}

void Reconciliation::place_from_front() {
    if (directory_.cut) return;  // the first pictures have no records
    std::uint64_t at = directory_.pictures_begin;
    for (std::size_t i = 0; i < count_ && at < directory_.pictures_end && look(i, at) != Look::other; ++i) {
        front_.push_back(at);
        const std::optional<std::uint64_t> size = size_of(i);
        if (!size || *size > directory_.pictures_end - at) break;
        at += *size;
    }
}

void Reconciliation::place_from_back() {
    std::uint64_t at = directory_.pictures_end;
    for (std::size_t i = count_; i-- > front_.size();) {
        const std::optional<std::uint64_t> size = size_of(i);
        if (!size || *size > at - directory_.pictures_begin) break;
        at -= *size;
        // The end of a plain album is known from the beginning of its directory; that of the other form may be cut off.
        const Look seen = look(i, at);
        if (seen == Look::other || (seen == Look::unknown && form_ == Form::with_thumbnails)) break;
        back_.push_back(at);
    }
    if (!back_.empty() && !front_.empty() && back_.back() < front_.back()) back_.clear();
}

Place Reconciliation::at_front(std::size_t i) const {
    const bool is_last_one = i + 1 == front_.size();
    const std::uint64_t limit = back_.empty() ? directory_.pictures_end : back_.back();
    const std::uint64_t room = (is_last_one ? limit : front_[i + 1]) - front_[i];
    const bool next_is_back = is_last_one && front_.size() + back_.size() == count_;
    const std::uint64_t size =
        is_last_one && (next_is_back && !back_.empty()) ? room : std::min(room, size_of(i).value_or(room));
    if (size < size_of(i).value_or(0)) return {front_[i], size, Verdict::incomplete};
    const bool confirmed =
        !is_last_one && look(i, front_[i]) == Look::picture && look(i + 1, front_[i + 1]) == Look::picture;
    return {front_[i], size, confirmed ? Verdict::whole : Verdict::damaged};
}

std::vector<Place> Reconciliation::run() {
    place_from_front();
    place_from_back();
    std::vector<Place> places(count_, Place{directory_.pictures_end, 0, Verdict::incomplete});
    for (std::size_t i = 0; i < front_.size(); ++i) places[i] = at_front(i);
    for (std::size_t n = 0; n < back_.size(); ++n) {
        const std::size_t i = count_ - 1 - n;
        const bool confirmed = look(i, back_[n]) == Look::picture;
        places[i] = {back_[n], *size_of(i), confirmed ? Verdict::whole : Verdict::damaged};
    }
    return places;
}

}  // namespace

std::vector<Place> place_pictures(std::string_view album, const Directory& directory, Form form) {
    if (!directory.exact) return Reconciliation(album, directory, form).run();
    std::vector<Place> places;
    std::uint64_t at = directory.pictures_begin;
    for (const Slot& slot : directory.slots) {
        places.push_back({at, *slot.record->size, Verdict::whole});
        at += *slot.record->size;
    }
    return places;
}

}  // namespace quill::pics
