#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The rows of the archive window, its page of ten rows, and what a view shows of each.
namespace quill::zip {

constexpr std::size_t rows_on_page = 10;

/// Returns the numbers of all rows of List1.
std::vector<std::size_t> all_rows(const arcview& w);

/// Fills the page from List1: its rows, their icons, the scroll bar, the number of rows.
void RenderRows(arcview& w);

/// Moves the page to the scroll bar's value.
void scroll_page(arcview& w);

/// Selects the pressed row of the page in List1.
void select_page_row(arcview& w);

/// Moves the page just far enough to show the selected row of List1.
void show_selected_row(arcview& w);

/// Begins the page at row `top` of List1, or as near as possible, without selecting another row.
void turn_page_to(arcview& w, std::size_t top);

/// How far a row's file can be trusted, or why there is none.
enum class RowCondition : std::uint8_t {
    verified,      ///< Its checksum matches.
    whole,         ///< Nothing confirms its bytes.
    directory,     ///< It is a directory.
    changed,       ///< Another program has changed its file; the archive has the earlier bytes.
    not_unpacked,  ///< It was not extracted (yet).
    locked,        ///< It needs a password, or a different one.
    damaged,       ///< Its file has bytes that are wrong or doubtful.
    refused        ///< It could not be extracted.
};

constexpr std::size_t condition_count = 8;

/// What a view shows of a row of List1.
struct RowDetails {
    std::string name;          ///< as in the archive, or as it was made safe
    std::uint64_t size = 0;    ///< bytes, unpacked
    std::uint64_t packed = 0;  ///< bytes in the archive
    std::string method;        ///< "deflated"
    std::uint32_t dos_time = 0;
    RowCondition condition = RowCondition::not_unpacked;
    bool encrypted = false;
    bool directory = false;
    std::vector<std::string> problems;  ///< one sentence each, the worst first
};

/// Returns the condition of a member after a run that read it: no better than its verdict, or than the worst of its
/// problems.
RowCondition condition_of(const MemberResult& result);

/// Returns the first of the member's worst problems; nullptr if there is none.
const Problem* worst_problem(const MemberResult& result);

/// Shows what is known of the rows now: views read them again, and `row_state` describes the selected one.
void show_row_states(arcview& w);

/// REQUIRES: row < List1.count(). Reads no file.
RowDetails row_details(arcview& w, std::size_t row);

/// Returns "Verified", "Needs a password" ...
std::string_view condition_text(RowCondition condition);

/// Returns whether there is more to say of a row of that condition: its file is not there as the archive has it.
bool needs_words(RowCondition condition);

/// "Verified", or what is wrong and the worst reason: "Damaged: its checksum does not agree".
std::string state_text(const RowDetails& details);

/// What rows can be sorted by.
enum class RowKey : std::uint8_t { name, size, packed, method, date, condition };

/// Sorts row numbers by `key`, equal ones by name.
void sort_rows(arcview& w, RowKey key, std::vector<std::size_t>& rows);

}  // namespace quill::zip
