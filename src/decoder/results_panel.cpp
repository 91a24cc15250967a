#include "decoder/results_panel.h"

#include "codec/recovery/disguise.h"
#include "codec/recovery/file_signature.h"
#include "decoder/opening.h"
#include "decoder/repair_guide.h"
#include "decoder/run_summary.h"
#include "decoder/type_icons.h"
#include "decoder/virus_guard.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/names.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/count.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace quill::decoder {
namespace {

constexpr std::array<std::string_view, 4> explanations = {
    "   Sometimes files can get made that are misnamed, or are of file types that your computer does not recognize, or "
    "are files that are used by programs that you do not have.",
    "   You can rename files if you know what types of files they are supposed to be by clicking on the file you wish "
    "to rename above, then click on the rename button.",
    "   Other files typically misnamed come out as 3dgenerator. This can be due to an extra line in the mim file which "
    "has a line which says filename=3dgenerater. Taking this line out with a text editor first before decoding can "
    "save "
    "having to rename the file now. If you know what type of file it is, .doc for a document usually, .jpg for most "
    "pictures, etc. rename the file now so you can load it into the appropriate program.",
    "   If a file has a proper name and nothing happens when you double click on it, your computer has no program that "
    "reads its type. Evince or Okular, for example, read .pdf documents, and LibreOffice reads .doc, .xls and .ppt "
    "files "
    "of Microsoft Office. They are free: look for them in your software center."};

shell::swit& main_window(shell::Context& context) {
    return context.windows.load<shell::swit>();
}

/// An ending of picture names, and another with the same meaning.
struct PictureEnding {
    std::string_view ending;
    std::string_view also;
};
constexpr std::array picture_endings = {PictureEnding{".gif", ".gif"}, PictureEnding{".jpg", "jpeg"}};

/// Returns the ending that the picture at `path` lacks; empty for other files and for correct names.
std::string_view missing_ending(const std::string& path) {
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    const codec::FileSignature* signature = file ? codec::signature_of(file->bytes()) : nullptr;
    if (signature == nullptr) return {};
    for (const PictureEnding& picture : picture_endings) {
        if (signature->extension != picture.ending) continue;
        const bool right =
            text::ends_with_ignoring_case(path, picture.ending) || text::ends_with_ignoring_case(path, picture.also);
        return right ? std::string_view() : picture.ending;
    }
    return {};
}

/// Adds the missing ending to the picture at `path`, of row `row`, under a name that no other file has.
void add_missing_ending(shell::swit& w, std::size_t row, std::string& path) {
    const std::string_view ending = missing_ending(path);
    if (ending.empty()) return;
    const std::string dir = files::dir_of(path);
    const std::string name = files::unique_name(dir, text::to_lower(w.List3.items().at(row)).append(ending));
    if (!files::rename_new(path, files::join(dir, name))) return;
    replace_result(w, row, name);
    path = files::join(dir, name);
}

bool wants_harmful(shell::Context& context, const std::string& path) {
    return context.platform.ask({.text = "   The virus check found something harmful in " + files::name_of(path) +
                                         ". Do you want to open it all the same?",
                                 .no_is_default = true,
                                 .question_mark = true});
}

/// Reports that no program opens the file at `path`, and lets the user choose one.
void offer_programs(shell::Context& context, const std::string& path) {
    constexpr std::size_t choose_one = 0;
    const std::size_t answer = context.platform.choose(
        {.text = "No program on this computer is set up to open files like " + files::name_of(path) + ".",
         .answers = {"&Choose a program...", "Cancel"},
         .escape_answer = 1});
    if (answer != choose_one) return;
    const std::string program = context.platform.choose_file(
        {.title = "The program that opens " + files::name_of(path), .directory = "/usr/bin"});
    if (program.empty() || context.platform.opener().start(program, {path}, files::dir_of(path))) return;
    context.platform.warn(files::name_of(program) + " could not be started.");
}

/// Moves the file at `path` to the trash, or deletes it if the user agrees where there is no trash. Returns false if
/// it is still in its place.
bool erase(shell::Context& context, const std::string& path) {
    if (!files::exists(path) || context.platform.opener().move_to_trash(path)) return true;
    const bool yes = context.platform.ask(
        {.text = "    " + files::name_of(path) + " can't be moved to the trash. Do you want to delete it for good?",
         .no_is_default = true,
         .question_mark = false});
    if (!yes) return false;
    if (files::remove_file(path)) return true;
    context.platform.warn(files::name_of(path) + " could not be deleted.");
    return false;
}

/// Renames the file within its directory; returns the reason if that is impossible.
Status rename_there(const std::string& path, const std::string& name) {
    if (name.find('/') != std::string::npos) {
        return Error{ErrorCode::bad_argument, 0, "A file name cannot contain a slash"};
    }
    return files::rename_new(path, files::join(files::dir_of(path), name));
}

}  // namespace

void connect_results_panel(shell::Context& context) {
    shell::swit& w = main_window(context);
    w.List3.double_click = [context]() mutable { open_result(context); };
    w.Command4.click = [context] { context.platform.end_process(); };
    w.open_folder.click = [context]() mutable { open_results_folder(context); };
    w.decode_another.click = [&w] { controls::run(w.another.click); };
    w.pictures.click = [context]() mutable { show_result_pictures(context); };
    w.Command5.click = [context]() mutable { rename_result(context); };
    w.Command6.click = [context]() mutable { explain_results(context); };
    w.Command7.click = [context]() mutable { erase_result(context); };
    w.Command8.click = [context]() mutable { check_result(context); };
    context.routes.scan_file = [context]() mutable { scanbutt(context); };
}

void open_result(shell::Context& context) {
    shell::swit& w = main_window(context);
    if (!w.List3.selected) return;
    const std::size_t row = *w.List3.selected;
    std::string path = result_path(w, row);
    if (files::file_size(path).value_or(0) == 0) {
        context.platform.warn("     This file was not decoded properly, it has a zero file size.");
        show_repair_guide(context);
        return;
    }
    if (result_row(w, row).scan == shell::ScanAnswer::found && !wants_harmful(context, path)) return;
    if (!may_open(context, path)) return;
    if (context.platform.opener().is_program(path)) {
        context.platform.opener().open_with_default(path);  // refuses, in one box
        return;
    }
    context.platform.message(
        " This program will now attempt to load this file into the default program on your computer for this type of "
        "file. If it does not load into a program, you may not have the right program for viewing this type of file or "
        "may need to rename the file to view it correctly.");
    add_missing_ending(w, row, path);
    if (!context.platform.opener().open_with_default(path)) offer_programs(context, path);
}

void show_result_pictures(shell::Context& context) {
    const shell::swit& w = main_window(context);
    std::vector<std::string> paths;
    for (std::size_t row = 0; row < w.List3.count(); ++row) paths.push_back(result_path(w, row));
    shell::show_pictures(context.platform, context.routes, paths);
}

void rename_result(shell::Context& context) {
    shell::swit& w = main_window(context);
    const std::string name = w.List3.selected_item();
    if (name.empty()) return;
    const std::size_t row = *w.List3.selected;
    const std::string new_name = context.platform.input({.text = "   Enter a new name for the file called " + name,
                                                         .title = "Rename " + name,
                                                         .default_answer = name,
                                                         .is_file_name = true});
    if (new_name.empty() || new_name == name) return;
    const Status renamed = rename_there(result_path(w, row), new_name);
    if (renamed) {
        replace_result(w, row, new_name);
    } else {
        context.platform.warn(new_name + ": " + renamed.error().text);
    }
}

void erase_result(shell::Context& context) {
    shell::swit& w = main_window(context);
    const std::string name = w.List3.selected_item();
    if (name.empty()) {
        context.platform.message("You have not yet selected a file to erase.");
        return;
    }
    const std::size_t row = *w.List3.selected;
    const bool yes = context.platform.ask(
        {.text = "    Are you sure you wish to delete the file called " + name + "? It is moved to the trash.",
         .no_is_default = true,
         .question_mark = true});
    if (!yes) return;
    if (!erase(context, result_path(w, row))) return;
    remove_result(w, row);
    if (w.List3.count() == 0) w.Command5.enabled = w.Command7.enabled = w.Command8.enabled = false;
}

void check_result(shell::Context& context) {
    const shell::swit& w = main_window(context);
    if (w.List3.selected_item().empty()) {
        context.platform.message("You have not yet selected a file.");
        return;
    }
    offer_scan(context, result_path(w, *w.List3.selected));
}

void explain_results(shell::Context& context) {
    for (const std::string_view explanation : explanations) context.platform.message(std::string(explanation));
}

RowDetails row_details(const shell::swit& w, std::size_t row) {
    const ResultRow result = result_row(w, row);
    RowDetails details;
    details.size = result.size ? text::counted(*result.size, "byte") : "gone";
    details.icon = icon_for_name(result.name);
    if (const Result<files::MappedFile> file = files::MappedFile::open(result.path)) {
        const codec::FileSignature* signature = codec::signature_of(file->bytes());
        const bool sure = signature != nullptr && signature->kind != codec::FileKind::text;
        if (sure) details.icon = icon_for_kind(signature->kind);
        details.picture = sure && signature->kind == codec::FileKind::picture;
    }
    if (result.verdict) details.verdict = codec::name_of(*result.verdict);
    details.doubtful = result.size.value_or(0) == 0 || result.verdict == codec::Verdict::damaged ||
                       result.verdict == codec::Verdict::incomplete;
    std::vector<codec::Problem> problems = result.problems;
    std::stable_partition(problems.begin(), problems.end(), report::is_for_people);
    for (const codec::Problem& problem : problems) {
        details.problems.emplace_back(text_of(problem));
        details.disguised = details.disguised || problem.kind == codec::ProblemKind::disguised_name;
    }
    details.doubtful = details.doubtful || details.disguised || result.scan == shell::ScanAnswer::found;
    return details;
}

}  // namespace quill::decoder
