#pragma once

#include "support/posts.h"

#include <optional>
#include <span>
#include <string>

/// Reads rows exactly by a format's definition, without any tolerance: the valid readings of a damaged text. Each
/// returns nullopt if anything in the rows shows that they have changed.
namespace quill::tests {

std::optional<std::string> read_uu(std::span<const Row> rows);
std::optional<std::string> read_uu_blank(std::span<const Row> rows);
std::optional<std::string> read_uu_check(std::span<const Row> rows);
std::optional<std::string> read_xx(std::span<const Row> rows);
std::optional<std::string> read_base64(std::span<const Row> rows);
std::optional<std::string> read_begin_base64(std::span<const Row> rows);
std::optional<std::string> read_yenc_size(std::span<const Row> rows);
std::optional<std::string> read_quoted_printable(std::span<const Row> rows);

/// Returns the check character of a UUE row: the sum of its values modulo 64, without the length.
char check_character(std::string_view row);

/// Returns the valid reading of the attachment `file` of a text; nullopt if its rows are not contiguous, a part of its
/// container's end is missing, or the rows themselves show damage.
std::optional<std::string> strict_reading(const Writing& writing, const Container& container, const Rows& rows,
                                          unsigned file);

}  // namespace quill::tests
