#include "htx/making/create_wizard.h"

#include "archive/changing/tree_walk.h"
#include "encoder/file_chooser.h"
#include "files/directory.h"
#include "files/mounts.h"
#include "files/path.h"
#include "htx/making/wizard_files.h"
#include "htx/spider/timmy.h"
#include "shell/long_run.h"
#include "shell/main_window.h"
#include "shell/open_archive.h"
#include "text/ascii.h"

#include <string_view>
#include <utility>

namespace quill::htx {
namespace {

using shell::Context;
using shell::CreateStep;
using shell::swit;

constexpr std::string_view zip_kind = "Creating a new ZIP file";
constexpr std::string_view step_two = "Step Two - Type in a name for the new ";
constexpr std::string_view step_two_end = " file you wish to create";
constexpr auto step_three_zip = "Step Three - Select files to copy and compress into the ZIP file";
constexpr auto step_three_book = "Step Three - Select Html files to copy and compress into the HTX file";
constexpr auto step_four = "Step Four - Copy files into the zip file and compress them.";
constexpr auto step_five = "Step Five - Compressing files, please wait.";
constexpr auto finished = "Done.   ";

constexpr auto ends_in_zip =
    "If this file ends in .zip it will not be recognized as an HTX file, you should leave it blank or make it end in "
    ".htx. To create a ZIP file, click Cancel and start over again by clicking the top option, Make a regular zip "
    "file, "
    "and do not select Make an HTX file.";
constexpr auto nothing_chosen = "You must select files to copy and compress into a ZIP file or click Cancel to quit.";
constexpr auto paths_warning =
    "Unless you are an expert ZIP file user you should not check this box. If this box is checked, the directory "
    "information will be saved along with the file names. When unzipping this file when you save the paths, the same "
    "directory structure will be recreated so make sure you unzip it to the same drive when unzipping. I strongly "
    "advise clicking this box again to make it unchecked and not to keep the same paths.";

swit& main_window(Context& context) {
    return context.windows.load<swit>();
}

bool makes_book(const swit& w) {
    return w.Opti(2).chosen;
}

bool is_at(const swit& w, std::string_view step) {
    return w.Label4.text.substr(0, 8) == step.substr(0, 8);
}

std::string kind_name(const swit& w) {
    return makes_book(w) ? "HTX" : "ZIP";
}

void show_name_step(swit& w) {
    w.Label4.text = std::string(step_two) + kind_name(w) + std::string(step_two_end);
    show_create_step(w, CreateStep::name);
}

void show_files_step(swit& w) {
    w.Label4.text = w.List1.count() != 0 ? step_four : makes_book(w) ? step_three_book : step_three_zip;
    w.Label12.text = std::to_string(w.List1.count()) + " files";
    show_create_step(w, CreateStep::files);
}

void leave_directory_step(Context& context) {
    auto& w = main_window(context);
    w.Label5.text.clear();
    context.session.WorkDir = context.session.SelectedDir = w.Dir1.path;
    show_name_step(w);
}

void choose_files(Context& context) {
    auto& w = main_window(context);
    const auto mode = makes_book(w) ? encoder::ChooserMode::collect_pages : encoder::ChooserMode::collect_files;
    const std::string directory = makes_book(w) ? files::drive_of(w.Dir1.path, files::drives()) : w.Dir1.path;
    encoder::cmdg& chooser = show_chooser(context, mode, directory);
    chooser.Picture1.visible = !makes_book(w);
    chooser.List2.assign(w.List1.items());
    connect_spider(context, chooser);
}

/// Returns the problem with the typed name; empty if it can be used. Adds its ending.
std::string complaint_about_name(const Context& context, swit& w) {
    std::string& name = w.Text2.text;
    if (name.empty()) return "You must create a name for the " + kind_name(w) + " file you wish to make.";
    const bool is_book = w.Label2.text != zip_kind;
    if (is_book && text::ends_with_ignoring_case(name, ".zip")) return ends_in_zip;
    const std::string_view ending = is_book ? ".htx" : ".zip";
    const std::string full = text::ends_with_ignoring_case(name, ending) ? name : name + std::string(ending);
    constexpr std::size_t longest = 255;
    if (full.find('/') != std::string::npos || full.find('\0') != std::string::npos || full.size() > longest) {
        return "A file can't be called " + name + ", type a different filename.";
    }
    if (files::exists(files::join(context.session.WorkDir, full))) {
        name.clear();
        return "A file called " + full +
               " already exists in this directory, type a different filename or click Cancel to start over again and "
               "choose a different directory.";
    }
    name = full;
    return {};
}

void leave_name_step(Context& context) {
    auto& w = main_window(context);
    const std::string complaint = complaint_about_name(context, w);
    if (!complaint.empty()) {
        context.platform.message(complaint);
        return;
    }
    context.session.SelectedFile = w.Text2.text;
    context.session.ZipPassword = w.Text3.text;
    show_files_step(w);
    choose_files(context);
}

enum class SameNames { keep_last, keep_both, cancel };

/// Asks what to do with files that would become one member.
SameNames ask_about_same_names(Context& context, const std::string& name) {
    const std::size_t answer = context.platform.choose(
        {.text =
             "Several of the files would be called " + name +
             " in the new file. Each later one replaces the one before, unless they are kept under different names.",
         .title = "Files of one name",
         .answers = {"&Keep all of them", "Keep only the &last", "&Cancel"},
         .default_answer = 0,
         .escape_answer = 2});
    return answer == 0 ? SameNames::keep_both : answer == 1 ? SameNames::keep_last : SameNames::cancel;
}

/// Makes the archive of all files in one step. Leaves no archive if that fails or is stopped.
void compress(Context& context, const std::vector<zip::NewMember>& members) {
    auto& w = main_window(context);
    const std::string path = files::join(context.session.SelectedDir, context.session.SelectedFile);
    w.Label4.text = step_five;
    show_create_step(w, CreateStep::compressing);
    const auto encryption = w.old_protection.checked ? archive::Encryption::traditional : archive::Encryption::aes256;
    std::vector<zip::MemberFailure> failures;
    Status made = Done{};
    {
        shell::LongRun run(context.platform, run_panel(w), "Compressing " + context.session.SelectedFile);
        made = zip::make_archive(
            path, members, {context.session.ZipPassword, encryption},
            [&](const zip::Progress& done) { return run.goes_on(done.bytes_done, done.bytes); }, failures);
    }
    if (!made) {
        show_files_step(w);
        if (made.error().code != ErrorCode::cancelled) {
            context.platform.warn(path + " could not be made: " + made.error().text + ".");
        }
        return;
    }
    w.Label4.text = finished;
    show_create_step(w, CreateStep::done);
    report_left_out(context.platform, failures);
}

/// Returns false if the user must size the book's window first.
bool has_window_size(Context& context) {
    auto& session = context.session;
    if (session.BookWidth != 0) return true;
    if (context.routes.size_book) {
        context.routes.size_book();
        return false;
    }
    session.BookWidth = 9495;
    session.BookHeight = 6960;
    return true;
}

void leave_files_step(Context& context) {
    auto& w = main_window(context);
    if (w.List1.count() == 0) {
        context.platform.message(nothing_chosen);
        return;
    }
    if (makes_book(w) && !has_window_size(context)) return;
    std::vector<zip::NewMember> members = wizard_members(w, w.Check1.checked);
    if (const auto same = name_of_two(members)) {
        const SameNames answer = ask_about_same_names(context, *same);
        if (answer == SameNames::cancel) return;
        if (answer == SameNames::keep_both) keep_all_names(members);
    }
    if (makes_book(w)) members.push_back(write_geometry(context.session, w));
    compress(context, members);
}

[[noreturn]] void leave(Context& context, std::string said) {
    auto& w = main_window(context);
    w.Label5.text.clear();
    w.List1.clear();
    w.List2.clear();
    hide_create_panels(w);
    context.platform.end_session(std::move(said));
}

void next(Context& context) {
    auto& w = main_window(context);
    if (is_at(w, "Step One")) {
        leave_directory_step(context);
    } else if (is_at(w, step_two)) {
        leave_name_step(context);
    } else if (is_at(w, step_three_zip) || is_at(w, step_four)) {
        leave_files_step(context);
    } else if (is_at(w, finished)) {
        leave(context, "The new file is ready.");
    }
}

/// Goes one step back. Keeps what was chosen and typed.
void go_back(Context& context) {
    auto& w = main_window(context);
    if (is_at(w, "Step One")) {
        w.Label2.text.clear();
        w.Frame1.visible = true;
    } else if (is_at(w, step_two)) {
        w.Label4.text = "Step One - Select a directory to create the new " + kind_name(w) + " file in";
        w.Label5.text = w.Dir1.path;
        show_create_step(w, CreateStep::directory);
    } else {
        show_name_step(w);
    }
}

void begin(Context& context) {
    auto& w = main_window(context);
    w.List1.clear();
    w.List2.clear();
    w.Text2.text.clear();
    w.Text3.text.clear();
    w.old_protection.checked = false;
    w.Check1.checked = false;
    context.session.BookWidth = 0;
    show_create_step(w, CreateStep::directory);
}

void open_made_file(Context& context) {
    hide_create_panels(main_window(context));
    shell::openarchive(context);
}

}  // namespace

void add_to_wizard(Context& context, const std::vector<std::string>& paths) {
    auto& w = main_window(context);
    for (const std::string& path : paths) {
        const std::string above = files::join(files::dir_of(path), "");
        for (const zip::TreeEntry& entry : zip::walk_tree(path, zip::NamedLink::followed)) {
            if (entry.kind != zip::EntryKind::file) continue;
            w.List1.add(entry.path.starts_with(above) ? entry.path.substr(above.size()) : files::name_of(entry.path));
            w.List2.add(entry.path);
        }
    }
    show_files_step(w);
}

void provide_create_wizard(Context& context) {
    auto& w = main_window(context);
    context.routes.create_archive = [&context] { begin(context); };
    context.routes.next_creating = [&context] { next(context); };
    w.back.click = [&context] { go_back(context); };
    w.Command2.click = [&context] { leave(context, "Nothing was created."); };
    w.Command3.click = [&context] { choose_files(context); };
    w.Check1.click = [&context, &w] {
        if (w.Check1.checked) context.platform.message(paths_warning);
    };
    w.open_made.click = [&context] { open_made_file(context); };
    w.show_made.click = [&context] { context.platform.opener().open_with_default(context.session.SelectedDir); };
}

}  // namespace quill::htx
