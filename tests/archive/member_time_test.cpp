#include "archive/container/member_time.h"

#include "archive/container/format.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace quill::zip {
namespace {

/// The time zone of this process while it lives.
class InZone {
  public:
    explicit InZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    InZone(const InZone&) = delete;
    InZone& operator=(const InZone&) = delete;
    ~InZone() {
        unsetenv("TZ");
        tzset();
    }
};

/// What the C library makes of a header's date and time.
std::time_t by_mktime(std::uint32_t t) {
    std::tm tm = {};
    tm.tm_year = static_cast<int>(t >> 25U) + 80;
    tm.tm_mon = static_cast<int>(t >> 21U & 15U) - 1;
    tm.tm_mday = static_cast<int>(t >> 16U & 31U);
    tm.tm_hour = static_cast<int>(t >> 11U & 31U);
    tm.tm_min = static_cast<int>(t >> 5U & 63U);
    tm.tm_sec = static_cast<int>(t & 31U) * 2;
    tm.tm_isdst = -1;
    return std::mktime(&tm);
}

std::uint32_t random_date(std::uint32_t& state) {
    return state = state * 1'664'525U + 1'013'904'223U;
}

TEST(MemberTime, ADateOfAHeaderIsLocalTime) {
    for (const auto* zone : {"UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "NST3:30NDT,M3.2.0,M11.1.0",
                             "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "<-12>12", "<+14>-14"}) {
        const InZone in_zone(zone);
        std::uint32_t state = 1;
        int ambiguous = 0;
        for (int i = 0; i < 5000; ++i) {
            Member member;
            member.dos_time = random_date(state);  // months 0 and 15 and minute 63 too
            const std::time_t time = modified_time(member);
            // In the hour that the clock shows twice, or not at all, both answers are right.
            const std::time_t distance = std::abs(time - by_mktime(member.dos_time));
            if (distance != 0) ++ambiguous;
            EXPECT_TRUE(distance == 0 || distance == 3600 || distance == 1800) << zone << ' ' << member.dos_time;
        }
        EXPECT_LT(ambiguous, 5) << zone;
    }
}

TEST(MemberTime, IsWrittenInFullWhateverTheHeaderSays) {
    const struct {
        std::uint32_t dos_time;
        const char* iso;
        const char* brief;
    } cases[] = {
        {19U << 25U | 1U << 21U | 31U << 16U | 9U << 11U | 9U << 5U | 29U, "1999-01-31 09:09:58", "01/31/99 09:09"},
        {0, "1980-00-00 00:00:00", "00/00/80 00:00"},
        {0xFFFFFFFF, "2107-15-31 31:63:62", "15/31/07 31:63"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(iso_date_time(c.dos_time), c.iso);
        EXPECT_EQ(date_time_text(c.dos_time), c.brief);
    }
}

}  // namespace
}  // namespace quill::zip
