#include "pics/directory.h"

#include <algorithm>
#include <limits>

namespace quill::pics {
namespace {

constexpr std::size_t most_unreadable = 16;  // successive records that a walk steps over

/// The sizes of records, added up without overflow.
class Sum {
  public:
    void add(const std::optional<Record>& record) {
        if (!record || !record->size) {
            known_ = false;
        } else {
            value_ = *record->size > most - value_ ? most : value_ + *record->size;
        }
    }
    bool is(std::uint64_t bytes) const { return known_ && value_ == bytes; }

  private:
    static constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t value_ = 0;
    bool known_ = true;
};

std::optional<Record> record_at(std::string_view album, std::uint64_t at) {
    return at <= album.size() ? parse_record(album.substr(at, record_size)) : std::nullopt;
}

bool is_strict_at(std::string_view album, std::uint64_t at) {
    const std::optional<Record> record = record_at(album, at);
    return record && record->strict;
}

/// Walks a directory from its end, which holds the first picture's record, towards the beginning of the album.
class BackwardWalk {
  public:
    BackwardWalk(std::string_view album, std::uint64_t end) : album_(album), at_(end) {}

    Directory run(bool steps_over) {
        Directory found;
        do {
            found.exact = sum_.is(at_ - header_size);
            if (found.exact) break;
        } while (take(found) || (steps_over && step_over(found)));
        found.pictures_end = at_;
        return found;
    }

  private:
    bool has(std::size_t slots) const { return at_ >= header_size + slots * record_size; }

    bool take(Directory& found) {
        if (!has(1)) return false;
        const std::optional<Record> record = record_at(album_, at_ - record_size);
        if (record) add(found, record);
        return record.has_value();
    }

    void add(Directory& found, const std::optional<Record>& record) {
        at_ -= record_size;
        found.slots.push_back({at_, record});
        sum_.add(record);
    }

    /// Includes unreadable slots if an undoubted record precedes them.
    bool step_over(Directory& found) {
        for (std::size_t n = 1; n <= most_unreadable && has(n + 1); ++n) {
            if (!is_strict_at(album_, at_ - (n + 1) * record_size)) continue;
            for (std::size_t i = 0; i < n; ++i) add(found, std::nullopt);
            return true;
        }
        return false;
    }

    std::string_view album_;
    std::uint64_t at_;
    Sum sum_;
};

/// Returns the end of the last undoubted record in the album; nullopt if there is none.
std::optional<std::uint64_t> last_record_end(std::string_view album) {
    for (std::size_t at = album.rfind(record_tag); at != album.npos && at >= header_size;
         at = album.rfind(record_tag, at - 1)) {
        if (is_strict_at(album, at) && at + record_size <= album.size()) return at + record_size;
    }
    return std::nullopt;
}

Directory read_plain(std::string_view album) {
    Directory found = BackwardWalk(album, album.size()).run(false);
    if (found.exact) return found;
    const std::optional<std::uint64_t> end = last_record_end(album);
    if (!end) {
        found = {.pictures_end = album.size(), .cut = true};
        return found;
    }
    found = BackwardWalk(album, *end).run(false);
    if (!found.exact) found = BackwardWalk(album, *end).run(true);
    found.trailing = album.size() - *end;
    found.cut = !found.exact && found.trailing != 0;
    return found;
}

/// Returns the number of units from `at` whose records can't be read, if an undoubted one follows; else 0.
std::size_t unreadable_units(std::string_view album, std::uint64_t at) {
    for (std::size_t n = 1; n <= most_unreadable; ++n) {
        if (is_strict_at(album, at + n * unit_size)) return n;
    }
    return 0;
}

Directory walk_units(std::string_view album, bool steps_over) {
    Directory found;
    Sum sum;
    std::uint64_t at = header_size;
    const auto add = [&](const std::optional<Record>& record) {
        found.slots.push_back({at, record});
        sum.add(record);
        at += unit_size;
    };
    while (at <= album.size()) {
        found.exact = sum.is(album.size() - at);
        if (found.exact) break;
        const std::optional<Record> record = record_at(album, at);
        const std::size_t unreadable = record || !steps_over ? 0 : unreadable_units(album, at);
        if (!record && unreadable == 0) break;
        if (record) add(record);
        for (std::size_t i = 0; i < unreadable; ++i) add(std::nullopt);
    }
    found.pictures_begin = std::min<std::uint64_t>(at, album.size());
    found.pictures_end = album.size();
    return found;
}

}  // namespace

Directory read_directory(std::string_view album, Form form) {
    if (form == Form::plain) return read_plain(album);
    Directory found = walk_units(album, false);
    if (!found.exact) found = walk_units(album, true);
    return found;
}

}  // namespace quill::pics
