#pragma once

#include "archive/library/library_records.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::zip {

/// The heading of a list of members.
constexpr std::string_view row_header = "Date and time    Size comp.  Uncomp.     %          Long file name";

/// Returns the row of a member: date and time, compressed size, size, percent saved, lower-case name, with tabs
/// between.
std::string member_row(const ZipItemInfo& info);

/// Returns the part of a row after the last tab.
std::string name_in_row(std::string_view row);

/// Returns the whole percent that compression saves, rounding halves to even; 0 for an empty member or one that grew.
int percent_saved(std::int64_t uncompressed_size, std::int64_t compressed_size);

/// Returns `number` in groups of three digits with commas between; empty for 0.
std::string grouped(std::uint64_t number);

}  // namespace quill::zip
