#include "zip/archive_saving.h"

#include "text/count.h"
#include "text/printable.h"
#include "zip/archive_document.h"
#include "zip/archive_rows.h"

#include <algorithm>

namespace quill::zip {
namespace {

constexpr auto nothing_to_save =
    "  No file was select to save changes to. Read the Help file on how to save changes to files within a ZIP file.";
constexpr auto nothing_changed = "No other program has changed the selected files, so there is nothing to save.";

enum class Answer : std::uint8_t { save, save_all, leave_out, leave_out_all, cancel };

struct AnswerRow {
    Answer answer;
    const char* caption;
    bool for_one;  // offered even for a single file
};

constexpr AnswerRow answers[] = {{Answer::save, "&Save", true},
                                 {Answer::save_all, "Save &all", false},
                                 {Answer::leave_out, "&Leave out", true},
                                 {Answer::leave_out_all, "Leave &out all", false},
                                 {Answer::cancel, "&Cancel", true}};

/// Returns true if the file was made from a member that could not be read completely.
bool is_of_damaged_member(arcview& w, std::size_t row) {
    const WorkCopy* copy = w.archives.copies().of(row);
    return copy != nullptr && condition_of(copy->result) == RowCondition::damaged;
}

std::string question_about(arcview& w, std::size_t row) {
    std::string text = text::printable(row_details(w, row).name) +
                       " was changed after it was unpacked, and the archive still has it as it was. ";
    if (is_of_damaged_member(w, row)) {
        text += "There it is damaged, and the file began with what could be read of it. Saving replaces the original. ";
    }
    return text + "Save it into the archive?\n\nLeft out, it stays as the file " +
           text::printable(w.archives.copies().path_of(row)) + ".";
}

Answer ask_about(arcview& w, std::size_t row, bool more) {
    platform::Choices choices;
    choices.text = question_about(w, row);
    choices.title = "Changed files";
    std::vector<Answer> offered;
    for (const AnswerRow& row_of_answer : answers) {
        if (!row_of_answer.for_one && !more) continue;
        offered.push_back(row_of_answer.answer);
        choices.answers.emplace_back(row_of_answer.caption);
    }
    choices.escape_answer = offered.size() - 1;
    return offered.at(w.context.platform.choose(choices));
}

/// Returns those of `rows` whose files were changed.
std::vector<std::size_t> changed_among(arcview& w, std::vector<std::size_t> rows) {
    std::erase_if(rows, [&](std::size_t row) { return w.archives.copies().state_of(row) != CopyState::changed; });
    return rows;
}

/// Returns true if an answer for all covers the row: a damaged member is never replaced without a question.
bool is_covered(arcview& w, std::size_t row, Answer for_all) {
    return for_all == Answer::leave_out_all || !is_of_damaged_member(w, row);
}

}  // namespace

std::optional<std::vector<std::size_t>> ask_about_changes(arcview& w, const std::vector<std::size_t>& changed) {
    std::vector<std::size_t> saved;
    std::optional<Answer> for_all;
    for (std::size_t i = 0; i < changed.size(); ++i) {
        const bool is_answered = for_all && is_covered(w, changed[i], *for_all);
        const Answer answer = is_answered ? *for_all : ask_about(w, changed[i], i + 1 < changed.size());
        if (answer == Answer::cancel) return std::nullopt;
        if (answer == Answer::save_all || answer == Answer::leave_out_all) for_all = answer;
        if (answer == Answer::save || answer == Answer::save_all) saved.push_back(changed[i]);
    }
    return saved;
}

bool settle_changes(arcview& w) {
    const auto saved = ask_about_changes(w, w.archives.copies().changed());
    return saved && save_rows(w, *saved);
}

bool settle_changes(arcview& w, const std::vector<std::size_t>& rows) {
    const auto saved = ask_about_changes(w, changed_among(w, rows));
    return saved && save_rows(w, *saved);
}

bool save_rows(arcview& w, const std::vector<std::size_t>& rows) {
    if (rows.empty()) return true;
    const std::string what = rows.size() == 1 ? "save of " + text::printable(row_details(w, rows.front()).name)
                                              : "save of " + text::counted(rows.size(), "file");
    return make_change(w, what, [&] { return w.archives.save_copies(w.view(), rows, w.IDC_ENCRYPTCODE.text); });
}

void SaveChangedFile(arcview& w) {
    const Unwatched unwatched(w);
    const std::vector<std::size_t> selected = w.List1.chosen_rows();
    std::vector<std::size_t> rows = changed_among(w, selected), damaged;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(damaged),
                 [&](std::size_t row) { return is_of_damaged_member(w, row); });
    std::erase_if(rows, [&](std::size_t row) { return is_of_damaged_member(w, row); });
    const auto replacing = ask_about_changes(w, damaged);
    if (!replacing) return;
    rows.insert(rows.end(), replacing->begin(), replacing->end());
    if (rows.empty() && damaged.empty()) {
        w.context.platform.message(selected.empty() ? nothing_to_save : nothing_changed);
    }
    save_rows(w, rows);
}

}  // namespace quill::zip
