#pragma once

#include "archive/library/library_records.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::zip {

/// What stands above a list of members.
constexpr std::string_view row_header = "Date and time    Size comp.  Uncomp.     %          Long file name";

/// The row of a member: date and time, compressed size, size, percent saved, lower-case name, with tabs between.
std::string member_row(const ZipItemInfo& info);

/// What stands behind the last tab of a row.
std::string name_in_row(std::string_view row);

/// Whole percent that compression saves, a half to the even side; 0 for an empty member or one that grew.
int percent_saved(std::int64_t uncompressed_size, std::int64_t compressed_size);

/// `number` in groups of three digits with commas between; empty for 0.
std::string grouped(std::uint64_t number);

}  // namespace quill::zip
