#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The rows of the archive window, the page of ten among them, and what a view shows of each.
namespace quill::zip {

constexpr std::size_t rows_on_page = 10;

/// The numbers of all rows of List1.
std::vector<std::size_t> all_rows(const arcview& w);

/// Fills the page from List1: its rows, their icons, the scroll bar, the number of rows.
void RenderRows(arcview& w);

/// The scroll bar was moved: the page begins at its value.
void scroll_page(arcview& w);

/// A row of the page was pressed: selects that row of List1.
void select_page_row(arcview& w);

/// A row of List1 was selected: the page moves as far as it must to show it.
void show_selected_row(arcview& w);

/// Lets the page begin at row `top` of List1, or as near as it can, without selecting another row.
void turn_page_to(arcview& w, std::size_t top);

/// How far a row's file can be trusted, or why there is none.
enum class RowCondition : std::uint8_t {
    verified,      ///< Its checksum agrees.
    whole,         ///< Nothing vouches for its bytes.
    directory,     ///< It is a directory.
    changed,       ///< Another program has changed its file, and the archive has the bytes from before.
    not_unpacked,  ///< It was not extracted (yet).
    locked,        ///< It needs a password, or another one.
    damaged,       ///< Its file has bytes that are wrong or doubtful.
    refused        ///< It could not be extracted.
};

constexpr std::size_t condition_count = 8;

/// What a view shows of a row of List1.
struct RowDetails {
    std::string name;          ///< as the archive has it, or as it was made safe
    std::uint64_t size = 0;    ///< bytes, unpacked
    std::uint64_t packed = 0;  ///< bytes in the archive
    std::string method;        ///< "deflated"
    std::uint32_t dos_time = 0;
    RowCondition condition = RowCondition::not_unpacked;
    bool encrypted = false;
    bool directory = false;
    std::vector<std::string> problems;  ///< one sentence each, the worst first
};

/// How a member came out of a run that read it: no better than its verdict, and than the worst of its problems.
RowCondition condition_of(const MemberResult& result);

/// Returns the problem that takes most away from the member, the first of those; nullptr where there is none.
const Problem* worst_problem(const MemberResult& result);

/// Shows what is known of the rows now: views read them again, and `row_state` describes the selected one.
void show_row_states(arcview& w);

/// REQUIRES: row < List1.count(). Reads no file.
RowDetails row_details(arcview& w, std::size_t row);

/// "Verified", "Needs a password" ...
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
