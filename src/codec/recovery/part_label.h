#pragma once

#include "codec/recovery/found_file.h"

#include <optional>
#include <string_view>

namespace quill::codec {

/// Reads the description of the following part in `line`, as splitting programs write it: "_=_ Part 002 of 005 of file
/// x.jpg", "section 2 of uuencode 4.02 of file x.zip    by R.E.M.", "[ Section: 2/3  File: x.zip ]", "-- part 3/9 --".
std::optional<PartLabel> read_part_label(std::string_view line);

/// Reads the description in a message's subject: "x.zip (2/5)", "x.zip [2/5]", "x.zip - 02/05 -", "x.zip part 2 of 5",
/// "x.zip (2of5)". `file` is the text before the numbers. Dates count for nothing, and of several numbers those between
/// brackets, then the last.
std::optional<PartLabel> label_of_subject(std::string_view subject);

/// Returns the number and total in a file's name ("x (2_5).txt", "x_2of5.txt"), else the number at its end ("x.003",
/// "x-03.uue"), and as `file` the path without them. The number is 0 if the name has none.
PartLabel label_of_path(const std::string& path);

/// Returns the number of a part that a file's name states clearly, with the total or as the extension ("x.zip.003"); 0
/// if it states none.
std::uint32_t part_of_path(const std::string& path);

}  // namespace quill::codec
