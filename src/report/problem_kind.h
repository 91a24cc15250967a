#pragma once

#include <cstdint>
#include <string_view>

namespace quill::report {

/// The damage that a problem does to the result.
enum class Grade : std::uint8_t {
    repaired,  ///< Unusual input that was understood; the bytes are not in doubt.
    damaged,   ///< Bytes of the result are or may be wrong.
    lost       ///< Bytes are missing from the result.
};

/// The audience of a repaired problem. People see all others.
enum class Audience : std::uint8_t { programs, people };

/// The evidence that the bytes of a result are right.
enum class Evidence : std::uint8_t {
    none,
    size,     ///< the text states their number, and it matches
    checksum  ///< a checksum of all of them matches
};

/// The kinds of problems of an input, for both engines. `traits_of` describes each.
enum class ProblemKind : std::uint8_t {
    // Of encoded files.
    bad_character,
    bad_check,
    bad_escape,
    bad_field,
    bad_group,
    bad_header_crc,
    bad_length,
    bad_md5,
    bad_padding,
    bad_size,
    bad_sum,
    cut_group,
    cut_off,
    cut_off_message,
    damaged_copy,
    damaged_message,
    disguised_name,
    dots_added,
    doubtful_end,
    doubtful_row,
    duplicate_part,
    encoded_message,
    escaped,
    foreign_line,
    guessed_text,
    indented,
    inner_mark,
    inner_padding,
    input_changed,
    input_cut,
    long_line,
    lost_blanks,
    md5_differs,
    missing_begin,
    missing_body,
    missing_boundary,
    unclosed_part,
    missing_end,
    missing_end_line,
    missing_padding,
    missing_part,
    more_problems,
    more_repairs,
    no_data,
    numbered,
    not_decoded,
    overlapping_parts,
    parts_differ,
    quoted,
    short_line,
    size_differs,
    tagged_lines,
    tagged_text,
    tags_removed,
    tags_removed_from_text,
    text_after_data,
    too_deep,
    too_few_bytes,
    too_many_files,
    uneven_lines,
    unnumbered_parts,
    unopened_message,
    wide_text,
    wrong_boundary,
    // Of both engines.
    bad_crc,
    not_written,
    // Of archives and their members.
    bad_code,
    bad_data,
    bad_descriptor,
    bad_directory,
    cancelled,
    cipher_differs,
    content,
    contents_differ,
    cut,
    extra_data,
    header_differs,
    junk_behind,
    limit,
    link,
    names_differ,
    no_directory,
    no_local_header,
    other_volume,
    overlap,
    password,
    renamed,
    shifted,
    too_many,
    unsupported,
    wrong_count,
    wrong_size,
    // Of picture albums and their pictures.
    bad_record,
    beyond_old_readers,
    cut_picture,
    doubtful_place,
    missing_picture,
    missing_records,
    sizes_disagree,
};

/// The fixed properties of a kind of problem.
struct KindTraits {
    ProblemKind kind;
    std::string_view word;  ///< for programs; kinds that differ only in grade share one
    Grade grade;
    Audience audience;          ///< if it is repaired
    Evidence settled_by;        ///< the least evidence that makes it repaired; `none` if nothing does
    std::string_view sentence;  ///< for people, without a full stop; a problem may have a more precise one
};

/// Returns the row of the table of kinds for `kind`.
const KindTraits& traits_of(ProblemKind kind);

}  // namespace quill::report
