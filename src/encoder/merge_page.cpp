#include "encoder/merge_page.h"

#include "encoder/merge.h"
#include "encoder/output_choice.h"
#include "files/directory.h"
#include "files/path.h"
#include "shell/main_window.h"
#include "viewer/file_run.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace quill::encoder {
namespace {

constexpr std::string_view nothing_to_add =
    "You must first select a file from the files list on the left. If there is no files in that list, change to a "
    "directory "
    "where the files are you want to merge are located.";
constexpr std::string_view too_few_files =
    "There are not enough files on the list to merge. To add files to the merge list, select some files and click "
    "'Edit' on the "
    "top menu bar, then click 'Add files to merge list'.";
constexpr std::string_view no_contents = "This file has no contents";
constexpr std::string_view output_name = "merged.txt";

constexpr std::string_view help_texts[] = {
    "   A long attachment is often sent in several posts. Save each post as a file of its own, all in one directory, "
    "then put "
    "those files on the list with the button that adds files.",
    "   UUE and MIME parts are joined in the order of the list, so add part 1 first, then part 2, and so on. yEnc "
    "parts carry "
    "their numbers, so they may be added in any order.",
    "   The joined file is called merged.txt and lies in the directory of the parts. If there is a merged.txt already, "
    "you are asked whether to replace it. None of the parts is changed. The "
    "main "
    "window then offers merged.txt for decoding. Clearing the list deletes no file.",
};

using MergeFunction = decltype(&merge_text);

void add_selected(shell::Context& context, cmdg& w) {
    const auto rows = w.File2.chosen_rows();
    if (rows.empty()) {
        context.platform.message(std::string(nothing_to_add));
        return;
    }
    for (const std::size_t row : rows) w.List7.add(w.File2.items()[row]);
}

/// Reports what is not in the merge, so that nothing is missing silently.
void report_left_out(shell::Context& context, const Merged& merged) {
    for (const std::string& doubt : doubts_about(merged)) context.platform.warn(doubt + ".");
    if (merged.left_out.empty()) return;
    constexpr std::size_t most_lines = 20;
    std::string text = "These files were left out:";
    for (std::size_t i = 0; i < std::min(merged.left_out.size(), most_lines); ++i) {
        const LeftOut& file = merged.left_out[i];
        text += "\n" + files::name_of(file.path) + ": " + file.reason;
    }
    if (merged.left_out.size() > most_lines)
        text += "\nand " + std::to_string(merged.left_out.size() - most_lines) + " more";
    context.platform.warn(text);
}

void offer_merged_file(shell::Context& context, cmdg& w, const std::string& output) {
    shell::Session& session = context.session;
    session.SelectedDir = session.WorkDir = w.Dir2.path;
    session.SelectedFile = files::name_of(output);
    shell::swit& main = context.windows.load<shell::swit>();
    main.Label3.text = output;
    if (files::file_size(output) == 0) {
        context.platform.message(std::string(no_contents));
        main.Label3.text.clear();
        context.platform.end_session("Nothing was joined: the files hold no lines to join.");
    }
    main.Picture2.visible = false;
    shell::show_file_captions(main, session.SelectedFile);
    main.apt(3).visible = main.opt(3).visible = true;
    context.windows.unload<cmdg>();
    main.visible = true;
}

/// Handles a failed merge: a file that is not a yEnc part ends the program; otherwise the page stays unchanged, after a
/// Stop without a message.
void tell_failure(shell::Context& context, cmdg& w, const Error& error) {
    w.visible = true;
    w.pointer = controls::MousePointer::normal;
    if (error.code == ErrorCode::cancelled) return;
    if (error.code == ErrorCode::bad_input) {
        context.platform.warn(error.text);
        context.platform.end_session("Nothing was joined: one of the files is not a part of a yEnc post.");
    }
    context.platform.warn("The files could not be merged: " + error.text + ".");
}

/// Runs the merge, shown in the progress panel.
Result<Merged> run_merge(shell::Context& context, const cmdg& w, MergeFunction function, const OutputChoice& output) {
    std::vector<std::string> paths;
    for (const std::string& name : w.List7.items()) paths.push_back(files::join(w.Dir2.path, name));
    viewer::FileRun run(context,
                        "Joining " + std::to_string(paths.size()) + " files into " + files::name_of(output.path));
    const auto progress = [&](const MergeProgress& at) {
        constexpr double steps = 1000;
        return run.goes_on(static_cast<std::uint64_t>(at.of_piece * steps), static_cast<std::uint64_t>(steps), at.index,
                           at.count);
    };
    return function(paths, output.path, progress, output.on_collision);
}

void merge(shell::Context& context, cmdg& w, MergeFunction function) {
    if (w.List7.count() < 2) {
        context.platform.message(std::string(too_few_files));
        return;
    }
    const std::optional<OutputChoice> output =
        choose_output(context.platform, files::join(w.Dir2.path, std::string(output_name)));
    if (!output) return;
    w.pointer = controls::MousePointer::busy;
    w.visible = function != merge_yenc;
    context.platform.repaint(w);
    const Result<Merged> merged = run_merge(context, w, function, *output);
    if (!merged) {
        tell_failure(context, w, merged.error());
        return;
    }
    w.pointer = controls::MousePointer::normal;
    report_left_out(context, *merged);
    offer_merged_file(context, w, output->path);
}

/// Returns to the main window, and continues with the create wizard's next step if the wizard is shown.
void back_to_main_window(shell::Context& context) {
    shell::swit& main = context.windows.load<shell::swit>();
    main.Option1.chosen = true;
    main.visible = true;
    if (main.Picture4.visible) controls::run(main.Command1.click);
    context.windows.unload<cmdg>();
}

}  // namespace

void wire_merge_page(shell::Context& context, cmdg& w) {
    w.Command7.click = w.File2.double_click = [&context, &w] { add_selected(context, w); };
    w.Command9.click = [&context, &w] { merge(context, w, merge_text); };
    w.Command10.click = [&context, &w] { merge(context, w, merge_yenc); };
    w.Command8.click = [&w] { w.List7.clear(); };
    w.Command12.click = [&context] {
        for (const std::string_view text : help_texts) context.platform.message(std::string(text));
    };
    w.Command13.click = [&context] { back_to_main_window(context); };
}

}  // namespace quill::encoder
