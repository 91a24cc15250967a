#pragma once

#include "archive/container/archive.h"

#include <cstdint>
#include <ctime>
#include <string>

namespace quill::zip {

/// Returns when a member was last changed, in seconds since 1970 UTC: from its timestamp field (Info-ZIP "UT"), its
/// NTFS field, or the date and time of its header, which are local time.
std::time_t modified_time(const Member& member);

/// Returns the local date and time for a header (APPNOTE 4.4.6), limited to the years 1980 to 2107.
std::uint32_t to_dos_time(std::time_t time);

/// Returns a header's date and time in the form "01/31/99 09:09": month, day, year, hour, minute.
std::string date_time_text(std::uint32_t dos_time);

/// Returns the same in the form "1999-01-31 09:09:58".
std::string iso_date_time(std::uint32_t dos_time);

}  // namespace quill::zip
