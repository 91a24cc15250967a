#include "report/problem_kind.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace quill::report {
namespace {

using enum Audience;
using enum Grade;
using enum ProblemKind;

constexpr Evidence none = Evidence::none;
constexpr Evidence size = Evidence::size;
constexpr Evidence checksum = Evidence::checksum;

// clang-format off
constexpr std::array kinds = {
    // Of encoded files.
    KindTraits{bad_character, "bad-character", damaged, programs, none,
        "Characters among the data are not of its alphabet"},
    KindTraits{bad_check, "bad-check", damaged, programs, none,
        "Check characters at the ends of rows disagree or are missing"},
    KindTraits{bad_escape, "bad-escape", damaged, programs, none,
        "A '=' in the line is not followed by two hexadecimal digits"},
    KindTraits{bad_field, "bad-field", repaired, people, none, "The stated CRC is not a 32-bit number"},
    KindTraits{bad_group, "bad-group", damaged, programs, none, "A group of the data has a single character"},
    KindTraits{bad_header_crc, "bad-header-crc", damaged, programs, none, "The checksum of the header is wrong"},
    KindTraits{bad_length, "bad-length", damaged, programs, none, "A row's length and its length character disagree"},
    KindTraits{bad_md5, "bad-md5", damaged, programs, none, "The stated MD5 is not that of the bytes that came out"},
    KindTraits{bad_padding, "bad-padding", damaged, programs, none,
        "The padding does not fit the data; characters are missing"},
    KindTraits{bad_size, "bad-size", damaged, programs, none, "The stated size is not that of the bytes that came out"},
    KindTraits{bad_sum, "bad-sum", damaged, programs, none,
        "The stated checksum is not that of the bytes that came out"},
    KindTraits{cut_group, "cut-group", lost, programs, none, "The data ends within a group of four characters"},
    KindTraits{cut_off, "cut-off", lost, programs, none, "The data ends before the file does"},
    KindTraits{cut_off_message, "cut-off-message", lost, programs, none,
        "The encoded message that holds this file is cut off"},
    KindTraits{damaged_copy, "damaged-copy", repaired, people, none,
        "This part exists more than once; a copy that is damaged is left out"},
    KindTraits{damaged_message, "damaged-message", damaged, programs, none,
        "The encoded message that holds this file is damaged"},
    KindTraits{disguised_name, "disguised-name", repaired, people, none,
        "The name makes this program look like something else"},
    KindTraits{dots_added, "dots-added", repaired, programs, none, "Dots that were added to lines are taken off"},
    KindTraits{doubtful_end, "doubtful-end", damaged, programs, size,
        "Text or data follows where the data should have gone on"},
    KindTraits{doubtful_row, "doubtful-row", damaged, programs, size,
        "This row may be data, or other text after its end"},
    KindTraits{duplicate_part, "duplicate-part", repaired, programs, none, "This part exists more than once"},
    KindTraits{encoded_message, "encoded-message", repaired, programs, none,
        "The text that holds this file lies, framed or encoded as a whole, in another"},
    KindTraits{escaped, "escaped", repaired, programs, none,
        "Characters are escaped as in HTML, and the escapes are undone"},
    KindTraits{foreign_line, "foreign-line", damaged, programs, none,
        "A line among the data is other text; it is left out"},
    KindTraits{guessed_text, "guessed-text", damaged, programs, checksum,
        "What was done to the text can be undone in more than one way"},
    KindTraits{indented, "indented", repaired, programs, none,
        "The lines are indented, and the blanks before them are taken off"},
    KindTraits{inner_mark, "inner-mark", repaired, programs, none,
        "A mark of UTF-8 lies inside the text, where files were joined"},
    KindTraits{inner_padding, "inner-padding", damaged, programs, size,
        "The data goes on after its padding; this may be another file"},
    KindTraits{input_changed, "input-changed", damaged, programs, none, "The input changed while it was read"},
    KindTraits{input_cut, "input-changed", lost, programs, none, "The input changed while it was read"},
    KindTraits{long_line, "long-line", repaired, programs, none,
        "The last row holds more characters than its length needs"},
    KindTraits{lost_blanks, "lost-blanks", repaired, programs, none,
        "Blanks at the end of a row were lost, and put back"},
    KindTraits{md5_differs, "md5-differs", repaired, people, none,
        "The stated MD5 is not that of the text with these line ends"},
    KindTraits{missing_begin, "missing-begin", lost, programs, none,
        "The line that begins the file is missing, and perhaps data after it"},
    KindTraits{missing_body, "missing-body", lost, programs, none,
        "The text ends in the header; nothing that can be read follows it"},
    KindTraits{missing_boundary, "missing-boundary", lost, programs, none,
        "The text ends before the line that closes this part"},
    KindTraits{unclosed_part, "missing-boundary", repaired, programs, none,
        "The line that closes this part is missing"},
    KindTraits{missing_end, "missing-end", lost, programs, none, "The line that ends the data is missing"},
    KindTraits{missing_end_line, "missing-end", repaired, programs, none,
        "The line \"end\" is missing after the last row"},
    KindTraits{missing_padding, "missing-padding", damaged, programs, size,
        "The padding at the end of the data is missing, and perhaps data before it"},
    KindTraits{missing_part, "missing-part", lost, programs, checksum, "A part is missing"},
    KindTraits{more_problems, "more-problems", damaged, programs, none, "There are further problems"},
    KindTraits{more_repairs, "more-problems", repaired, programs, none, "There are further problems"},
    KindTraits{no_data, "no-data", damaged, programs, none, "The header announces encoded data, but there is none"},
    KindTraits{numbered, "numbered", repaired, programs, none,
        "The lines are numbered, and the numbers before them are taken off"},
    KindTraits{not_decoded, "not-decoded", lost, programs, none, "Nothing could be decoded"},
    KindTraits{overlapping_parts, "overlapping-parts", damaged, programs, none, "This part overlaps the one before it"},
    KindTraits{parts_differ, "parts-differ", damaged, people, checksum, "This part exists in forms that differ"},
    KindTraits{quoted, "quoted", repaired, programs, none,
        "The lines are quoted, and the marks before them are taken off"},
    KindTraits{short_line, "short-line", damaged, programs, checksum,
        "A row is shorter than its length character says"},
    KindTraits{size_differs, "size-differs", repaired, programs, none,
        "The stated size is not that of the bytes that came out"},
    KindTraits{tagged_lines, "tagged-lines", repaired, programs, none, "<BR> takes the place of the ends of lines"},
    KindTraits{tagged_text, "tagged-lines", damaged, programs, none,
        "<BR> takes the place of the ends of lines, which are lost"},
    KindTraits{tags_removed, "tags-removed", repaired, programs, none, "<BR> at the ends of lines was removed"},
    KindTraits{tags_removed_from_text, "tags-removed", damaged, programs, none,
        "<BR> at the ends of lines was removed"},
    KindTraits{text_after_data, "text-after-data", repaired, people, none, "Text follows the end of the data"},
    KindTraits{too_deep, "too-deep", lost, programs, none, "Messages are nested more deeply than the program follows"},
    KindTraits{too_few_bytes, "bad-size", lost, programs, none, "The text states more bytes than came out"},
    KindTraits{too_many_files, "too-many-files", lost, programs, none,
        "The input holds too many files; those from here on are left out"},
    KindTraits{uneven_lines, "uneven-lines", damaged, programs, checksum,
        "A row is not as long as the others, as only the last may be"},
    KindTraits{unnumbered_parts, "unnumbered-parts", damaged, programs, size,
        "Nothing says that this part follows the one before it; others may be missing"},
    KindTraits{unopened_message, "unopened-message", lost, programs, none,
        "What lies in an encoded message is not looked for: too large, too deep or no room for a copy"},
    KindTraits{wide_text, "utf-16", repaired, programs, none,
        "The text is saved with two bytes a character (UTF-16)"},
    KindTraits{wrong_boundary, "wrong-boundary", repaired, programs, none,
        "The boundary between the parts is not the one that the header names"},
    // Of both engines.
    KindTraits{bad_crc, "bad-crc", damaged, programs, none, "The checksum is wrong"},
    KindTraits{not_written, "not-written", lost, programs, none, "It could not be written"},
    // Of archives and their members.
    KindTraits{bad_code, "bad-code", damaged, programs, none, "its authentication code is wrong"},
    KindTraits{bad_data, "bad-data", damaged, programs, none, "its compressed data are broken"},
    KindTraits{bad_descriptor, "bad-descriptor", damaged, programs, none,
        "the CRC and sizes after its data are others"},
    KindTraits{bad_directory, "bad-directory", repaired, programs, none, "a directory entry is unreadable"},
    KindTraits{cancelled, "cancelled", lost, programs, none, "the run was stopped before it was done"},
    KindTraits{cipher_differs, "header-differs", damaged, programs, none,
        "its own header and the directory disagree on what the encrypted data are"},
    KindTraits{content, "content", lost, programs, none, "it is a directory, and its content is not written"},
    KindTraits{contents_differ, "contents-differ", damaged, programs, none,
        "by its own header it has another content, which other programs may read"},
    KindTraits{cut, "cut", lost, programs, none, "it is cut off"},
    KindTraits{extra_data, "extra-data", repaired, programs, none, "bytes follow its compressed data"},
    KindTraits{header_differs, "header-differs", repaired, programs, none, "its own header and the directory disagree"},
    KindTraits{junk_behind, "junk-behind", repaired, programs, none, "bytes follow that are not the archive's"},
    KindTraits{limit, "limit", lost, programs, none, "the archive comes to more bytes than the limit allows"},
    KindTraits{link, "link", repaired, programs, none, "a symbolic link, written as a text of its target"},
    KindTraits{names_differ, "names-differ", damaged, programs, none, "its own header has another name"},
    KindTraits{no_directory, "no-directory", repaired, programs, none,
        "the directory at the end is missing; members were found by their own headers"},
    KindTraits{no_local_header, "no-local-header", lost, programs, none, "no member begins where it should"},
    KindTraits{other_volume, "other-volume", lost, programs, none, "it lies in another volume of a split archive"},
    KindTraits{overlap, "overlap", lost, programs, none, "it begins inside another member, as in an archive bomb"},
    KindTraits{password, "password", lost, programs, none, "it is encrypted"},
    KindTraits{renamed, "renamed", repaired, programs, none, "its name is not safe or not unique here"},
    KindTraits{shifted, "shifted", repaired, programs, none, "the archive lies elsewhere than it says"},
    KindTraits{too_many, "too-many", lost, programs, none,
        "the directory has more entries than the file can have members"},
    KindTraits{unsupported, "unsupported", lost, programs, none, "it is stored in a way that cannot be read"},
    KindTraits{wrong_count, "wrong-count", repaired, programs, none, "the directory states another number of entries"},
    KindTraits{wrong_size, "wrong-size", damaged, programs, none, "it has another size than it states"},

    KindTraits{bad_record, "bad-record", damaged, programs, none, "its record in the album can't be read"},
    KindTraits{beyond_old_readers, "beyond-old-readers", repaired, people, none,
        "older programs read no more than 9,999 pictures and 2 GiB of an album"},
    KindTraits{cut_picture, "cut-picture", lost, programs, none, "bytes of it are missing"},
    KindTraits{doubtful_place, "doubtful-place", damaged, programs, none,
        "where it begins and ends in the album is in doubt"},
    KindTraits{missing_picture, "missing-picture", lost, programs, none, "all of its bytes are missing"},
    KindTraits{missing_records, "missing-records", lost, programs, none,
        "the end of the album is missing, and with it the records of pictures"},
    KindTraits{sizes_disagree, "sizes-disagree", damaged, programs, none,
        "the sizes of the pictures do not come to the size of the album"},
};
// clang-format on

constexpr bool is_in_order() {
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (kinds.at(i).kind != static_cast<ProblemKind>(i)) return false;
    }
    return true;
}
static_assert(is_in_order(), "each kind has the row of its own number");

}  // namespace

const KindTraits& traits_of(ProblemKind kind) {
    return kinds.at(static_cast<std::size_t>(kind));
}

}  // namespace quill::report
