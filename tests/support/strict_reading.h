#pragma once

#include "support/posts.h"

#include <optional>
#include <span>
#include <string>

/// Reads rows as a format's definition has them, without any tolerance: what a damaged text may honestly be taken for.
/// Each returns nullopt where anything in the rows shows that they are not as they were written.
namespace quill::tests {

std::optional<std::string> read_uu(std::span<const Row> rows);
std::optional<std::string> read_uu_blank(std::span<const Row> rows);
std::optional<std::string> read_uu_check(std::span<const Row> rows);
std::optional<std::string> read_xx(std::span<const Row> rows);
std::optional<std::string> read_base64(std::span<const Row> rows);
std::optional<std::string> read_begin_base64(std::span<const Row> rows);
std::optional<std::string> read_yenc_size(std::span<const Row> rows);
std::optional<std::string> read_quoted_printable(std::span<const Row> rows);

/// The check character of a UUE row: the sum of its values modulo 64, the length left out.
char check_character(std::string_view row);

/// What the attachment `file` of a text may be taken for; nullopt where its rows don't follow each other, something
/// that its container ends it by is missing, or the rows themselves show damage.
std::optional<std::string> strict_reading(const Writing& writing, const Container& container, const Rows& rows,
                                          unsigned file);

}  // namespace quill::tests
