#include "archive/container/member_time.h"

#include "archive/container/format.h"

#include <chrono>
#include <optional>
#include <string_view>

namespace quill::zip {
namespace {

struct DosTime {
    unsigned year, month, day, hour, minute, second;
};

DosTime parts_of(std::uint32_t t) {
    return {(t >> 25U) + 1980, t >> 21U & 15U, t >> 16U & 31U, t >> 11U & 31U, t >> 5U & 63U, (t & 31U) * 2};
}

/// Returns how far the local clock is ahead of UTC at `time`, in seconds.
std::time_t offset_at(std::time_t time) {
    std::tm tm = {};
    return localtime_r(&time, &tm) != nullptr ? tm.tm_gmtoff : 0;
}

/// Returns when the local clock shows `t`; a month 0 or a day 31 too many counts from the months beside it. Unlike
/// mktime it does not look at the zone's file each time, which would make the threads of an extraction wait.
std::time_t from_local_clock(const DosTime& t) {
    using namespace std::chrono;
    const year_month month = year(static_cast<int>(t.year)) / January + months(static_cast<int>(t.month) - 1);
    const sys_seconds shown =
        sys_days(month / 1) + days(static_cast<int>(t.day) - 1) + hours(t.hour) + minutes(t.minute) + seconds(t.second);
    const std::time_t clock = shown.time_since_epoch().count();
    return clock - offset_at(clock - offset_at(clock));
}

/// Appends `value` in two digits, and `separator`.
void append_digits(std::string& text, unsigned value, std::string_view separator = {}) {
    text += static_cast<char>('0' + value / 10 % 10);
    text += static_cast<char>('0' + value % 10);
    text += separator;
}

std::optional<std::time_t> from_timestamp_field(const Member& member) {
    const std::optional<std::string_view> field = extra_field(member.extra, extra_timestamp);
    if (!field || field->size() < 5 || (static_cast<unsigned char>(field->front()) & 1U) == 0) return std::nullopt;
    return static_cast<std::int32_t>(get32(*field, 1));
}

std::optional<std::time_t> from_ntfs_field(const Member& member) {
    constexpr std::uint64_t ticks_per_second = 10'000'000;
    constexpr std::int64_t from_1601_to_1970 = 11'644'473'600;
    const std::optional<std::string_view> field = extra_field(member.extra, extra_ntfs);
    if (!field || field->size() < 16 || get16(*field, 4) != 1) return std::nullopt;
    const std::uint64_t ticks = get64(*field, 8);
    if (ticks == 0) return std::nullopt;
    return static_cast<std::time_t>(ticks / ticks_per_second) - from_1601_to_1970;
}

}  // namespace

std::time_t modified_time(const Member& member) {
    if (const std::optional<std::time_t> time = from_timestamp_field(member)) return *time;
    if (const std::optional<std::time_t> time = from_ntfs_field(member)) return *time;
    return from_local_clock(parts_of(member.dos_time));
}

std::uint32_t to_dos_time(std::time_t time) {
    constexpr std::uint32_t first = 1U << 21U | 1U << 16U;  // 1980-01-01 00:00
    constexpr std::uint32_t last = 0xFF9FBF7D;              // 2107-12-31 23:59:58
    std::tm tm = {};
    if (localtime_r(&time, &tm) == nullptr || tm.tm_year < 80) return first;
    if (tm.tm_year > 207) return last;
    const auto field = [](int value, unsigned shift) { return static_cast<std::uint32_t>(value) << shift; };
    return field(tm.tm_year - 80, 25) | field(tm.tm_mon + 1, 21) | field(tm.tm_mday, 16) | field(tm.tm_hour, 11) |
           field(tm.tm_min, 5) | field(tm.tm_sec / 2, 0);
}

std::string date_time_text(std::uint32_t dos_time) {
    const DosTime t = parts_of(dos_time);
    std::string text;
    append_digits(text, t.month, "/");
    append_digits(text, t.day, "/");
    append_digits(text, t.year, " ");
    append_digits(text, t.hour, ":");
    append_digits(text, t.minute);
    return text;
}

std::string iso_date_time(std::uint32_t dos_time) {
    const DosTime t = parts_of(dos_time);
    std::string text;
    text.reserve(sizeof "1980-01-01 00:00:00");
    append_digits(text, t.year / 100);
    append_digits(text, t.year, "-");
    append_digits(text, t.month, "-");
    append_digits(text, t.day, " ");
    append_digits(text, t.hour, ":");
    append_digits(text, t.minute, ":");
    append_digits(text, t.second);
    return text;
}

}  // namespace quill::zip
