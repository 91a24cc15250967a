#include "archive/container/member_time.h"

#include "archive/container/format.h"

#include <cstdio>
#include <optional>

namespace quill::zip {
namespace {

struct DosTime {
    unsigned year, month, day, hour, minute, second;
};

DosTime parts_of(std::uint32_t t) {
    return {(t >> 25U) + 1980, t >> 21U & 15U, t >> 16U & 31U, t >> 11U & 31U, t >> 5U & 63U, (t & 31U) * 2};
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
    const DosTime parts = parts_of(member.dos_time);
    std::tm tm = {};
    tm.tm_year = static_cast<int>(parts.year) - 1900;
    tm.tm_mon = static_cast<int>(parts.month) - 1;
    tm.tm_mday = static_cast<int>(parts.day);
    tm.tm_hour = static_cast<int>(parts.hour);
    tm.tm_min = static_cast<int>(parts.minute);
    tm.tm_sec = static_cast<int>(parts.second);
    tm.tm_isdst = -1;
    return std::mktime(&tm);
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
    char text[32];
    std::snprintf(text, sizeof text, "%02u/%02u/%02u %02u:%02u", t.month, t.day, t.year % 100, t.hour, t.minute);
    return text;
}

std::string iso_date_time(std::uint32_t dos_time) {
    const DosTime t = parts_of(dos_time);
    char text[64];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", t.year, t.month, t.day, t.hour, t.minute,
                  t.second);
    return text;
}

}  // namespace quill::zip
