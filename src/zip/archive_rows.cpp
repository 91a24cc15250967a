#include "zip/archive_rows.h"

#include "archive/container/format.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/printable.h"
#include "zip/member_rows.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace quill::zip {
namespace {

std::size_t last_top(const arcview& w) {
    return w.List1.count() > rows_on_page ? w.List1.count() - rows_on_page : 0;
}

/// Returns the path of a row's file; its future path if the row has none.
std::string path_of_row(arcview& w, std::size_t row) {
    const std::string path = w.archives.copies().path_of(row);
    return path.empty() ? files::join(w.context.session.WorkDir, name_in_row(w.List1.items()[row])) : path;
}

/// Shows the icon of the selected program, which a click opens.
void show_program_icon(arcview& w) {
    w.Picture9.visible = false;
    if (!w.List1.selected || *w.List1.selected >= w.List1.count()) return;
    const std::string name = w.List1.selected_item();
    if (!text::ends_with_ignoring_case(name, "exe")) return;
    w.Picture9.icon = integration::getticon(path_of_row(w, *w.List1.selected), 1);
    w.Picture9.visible = !w.Picture9.icon.name.empty();
}

void select_on_page(arcview& w) {
    const auto& row = w.List1.selected;
    const bool on_page = row && *row >= w.ListTop && *row < w.ListTop + w.List7.count();
    w.List7.selected = on_page ? std::optional(*row - w.ListTop) : std::nullopt;
}

/// Returns the member's result in the last run that read it: a test, or the extraction when the window opened.
const MemberResult* last_result(const arcview& w, std::size_t row) {
    const auto tested = w.tested.find(row);
    if (tested != w.tested.end()) return &tested->second;
    const WorkCopy* copy = w.archives.copies().of(row);
    return copy != nullptr ? &copy->result : nullptr;
}

RowCondition condition_of(const arcview& w, std::size_t row, const Member& member) {
    if (member.is_directory()) return RowCondition::directory;
    if (w.changed_rows.contains(row)) return RowCondition::changed;
    const MemberResult* result = last_result(w, row);
    return result != nullptr ? condition_of(*result) : RowCondition::not_unpacked;
}

std::uint64_t number_of(arcview& w, std::size_t row, RowKey key) {
    const Member& member = w.listed->archive.members().at(row);
    switch (key) {
        case RowKey::size:
            return member.uncompressed_size;
        case RowKey::packed:
            return member.compressed_size;
        case RowKey::method:
            return member.content_method();
        case RowKey::date:
            return member.dos_time;
        default:
            return static_cast<std::uint64_t>(condition_of(w, row, member));
    }
}

/// Returns the problems, the worst first.
std::vector<std::string> sentences_of(const MemberResult& result) {
    std::vector<Problem> problems = result.problems;
    std::stable_sort(problems.begin(), problems.end(),
                     [](const Problem& a, const Problem& b) { return grade_of(a) > grade_of(b); });
    std::vector<std::string> sentences;
    for (const Problem& problem : problems) sentences.emplace_back(text_of(problem));
    return sentences;
}

/// Returns what is to be known of a row that is not as it should be; empty for others.
std::string state_in_words(arcview& w, std::size_t row) {
    const RowDetails details = row_details(w, row);
    if (details.directory || !needs_words(details.condition)) return {};
    std::string text = text::printable(details.name) + ": " + state_text(details);
    for (std::size_t i = 1; i < details.problems.size(); ++i) text += "; " + details.problems[i];
    return text + '.';
}

bool any_row_needs_words(const arcview& w) {
    if (!w.listed) return false;
    const std::vector<Member>& members = w.listed->archive.members();
    for (std::size_t row = 0; row < members.size(); ++row) {
        if (needs_words(condition_of(w, row, members[row]))) return true;
    }
    return false;
}

void describe_selected_row(arcview& w) {
    const std::optional<std::size_t> row = w.List1.selected;
    w.row_state.text = row && *row < w.List1.count() ? state_in_words(w, *row) : std::string();
}

}  // namespace

std::vector<std::size_t> all_rows(const arcview& w) {
    std::vector<std::size_t> rows(w.List1.count());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    return rows;
}

RowCondition condition_of(const MemberResult& result) {
    if (result.needs_password) return RowCondition::locked;
    const Problem* worst = worst_problem(result);
    const bool in_doubt = worst != nullptr && grade_of(*worst) != Grade::repaired;
    switch (result.verdict) {
        case Verdict::verified:
            return in_doubt ? RowCondition::damaged : RowCondition::verified;
        case Verdict::whole:
            return in_doubt ? RowCondition::damaged : RowCondition::whole;
        case Verdict::damaged:
        case Verdict::incomplete:
            return RowCondition::damaged;
        case Verdict::refused:
            break;
    }
    const bool stopped = std::any_of(result.problems.begin(), result.problems.end(),
                                     [](const Problem& p) { return p.kind == ProblemKind::cancelled; });
    return stopped ? RowCondition::not_unpacked : RowCondition::refused;
}

const Problem* worst_problem(const MemberResult& result) {
    const auto worst = std::max_element(result.problems.begin(), result.problems.end(),
                                        [](const Problem& a, const Problem& b) { return grade_of(a) < grade_of(b); });
    return worst == result.problems.end() ? nullptr : &*worst;
}

void RenderRows(arcview& w) {
    w.Image10.for_each([](int, IconPicture& picture) { picture.icon = {}; });
    w.VScroll2.maximum = last_top(w);
    w.VScroll2.enabled = w.VScroll2.maximum > 0;
    w.VScroll2.value = w.ListTop = std::min(w.ListTop, w.VScroll2.maximum);
    w.Label23.text = std::to_string(w.List1.count());
    std::vector<std::string> page;
    for (std::size_t row = w.ListTop; row < w.List1.count() && page.size() < rows_on_page; ++row) {
        page.push_back(w.List1.items()[row]);
        w.Image10(static_cast<int>(page.size())).icon = integration::getticon(path_of_row(w, row), 1);
    }
    w.List7.assign(std::move(page));
    select_on_page(w);
}

void turn_page_to(arcview& w, std::size_t top) {
    const std::size_t new_top = std::min(top, last_top(w));
    if (new_top == w.ListTop) return;
    w.ListTop = new_top;
    RenderRows(w);
}

void scroll_page(arcview& w) {
    w.Picture9.visible = false;
    w.ListTop = w.VScroll2.value;
    RenderRows(w);
}

void select_page_row(arcview& w) {
    if (!w.List7.selected) return;
    w.List1.selected = *w.List7.selected + w.VScroll2.value;
    w.List1.selected_rows.clear();
    show_program_icon(w);
}

void show_row_states(arcview& w) {
    ++w.shown_revision;
    w.row_state.visible = any_row_needs_words(w);
    describe_selected_row(w);
}

void show_selected_row(arcview& w) {
    show_program_icon(w);
    describe_selected_row(w);
    if (w.List1.selected) {
        const std::size_t row = *w.List1.selected;
        if (row < w.ListTop) turn_page_to(w, row);
        if (row >= w.ListTop + rows_on_page) turn_page_to(w, row - rows_on_page + 1);
    }
    select_on_page(w);
}

RowDetails row_details(arcview& w, std::size_t row) {
    RowDetails details;
    if (!w.listed || row >= w.listed->archive.members().size()) return details;
    const Member& member = w.listed->archive.members()[row];
    const MemberPath& path = w.listed->paths[row];
    details.name = path.renamed ? path.path : std::string(member.name);
    details.size = member.uncompressed_size;
    details.packed = member.compressed_size;
    details.method = method_name(member.content_method());
    details.dos_time = member.dos_time;
    details.encrypted = member.is_encrypted();
    details.directory = member.is_directory();
    details.condition = condition_of(w, row, member);
    if (const MemberResult* result = last_result(w, row)) details.problems = sentences_of(*result);
    return details;
}

std::string_view condition_text(RowCondition condition) {
    static constexpr std::array<std::string_view, condition_count> texts = {
        "Verified", "Whole", "Directory", "Changed", "Not unpacked", "Needs a password", "Damaged", "Refused"};
    return texts.at(static_cast<std::size_t>(condition));
}

bool needs_words(RowCondition condition) {
    return condition > RowCondition::directory;
}

std::string state_text(const RowDetails& details) {
    std::string text(condition_text(details.condition));
    if (details.condition == RowCondition::changed) return text + " by another program since it was unpacked";
    if (needs_words(details.condition) && !details.problems.empty()) text += ": " + details.problems.front();
    return text;
}

void sort_rows(arcview& w, RowKey key, std::vector<std::size_t>& rows) {
    std::vector<std::string_view> names;
    for (const std::string& row : w.List1.items()) names.push_back(std::string_view(row).substr(row.rfind('\t') + 1));
    std::stable_sort(rows.begin(), rows.end(), [&](std::size_t a, std::size_t b) { return names[a] < names[b]; });
    if (key == RowKey::name || !w.listed) return;
    std::vector<std::uint64_t> numbers;
    for (std::size_t row = 0; row < names.size(); ++row) numbers.push_back(number_of(w, row, key));
    std::stable_sort(rows.begin(), rows.end(), [&](std::size_t a, std::size_t b) { return numbers[a] < numbers[b]; });
}

}  // namespace quill::zip
