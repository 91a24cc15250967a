#include "shell/startup.h"

#include "files/directory.h"
#include "files/path.h"
#include "shell/command_line.h"
#include "shell/main_window.h"
#include "shell/main_workflow.h"
#include "shell/open_archive.h"
#include "shell/select_file.h"

namespace quill::shell {
namespace {

constexpr int window_width = 10755;  // twips
constexpr int window_height = 7215;
constexpr int panel_height = 6405;  // the height without the menu bar and the line of the current file

void place_window(swit& w, const platform::Machine& machine) {
    w.width = window_width;
    w.height = window_height;
    w.left = (machine.screen_width() - window_width) / 2;
    w.top = (machine.screen_height() - window_height) / 2;
    w.Picture1.width = window_width;
    w.Picture1.height = panel_height;
    w.Picture4.left = w.Picture1.left;
    w.Picture4.top = w.Picture1.top;
    w.Picture4.width = w.Picture1.width;
    w.Picture4.height = w.Picture1.height;
}

void adapt_to_system(swit& w, const platform::Machine& machine) {
    if (machine.has_theme_sizing()) return;
    w.xpmen.visible = false;
    w.xpth.checked = false;
}

void fix_directories(Context& context) {
    Session& session = context.session;
    session.AppDir = files::current_directory();
    session.AppParentDir = files::dir_of(session.AppDir);
    session.WindowsDir = context.platform.machine().system_directory();
    session.FavListPath = files::join(session.AppDir, "default.fpl");
    session.UserName = context.platform.machine().user_name();
}

void start_creating(Context& context, bool htx) {
    Session& session = context.session;
    auto& w = context.windows.load<swit>();
    option_2(context);
    session.SelectedDir = files::current_directory();
    session.WorkDir = in_parent_directory(session, "system/temp");
    if (htx) w.Label2.text = "Creating a new HTX file";
    w.Text1.text = session.WorkDir;
}

/// Follows the command line. Returns true if the load step continues after it.
bool follow_command_line(Context& context, const std::string& line) {
    auto& w = context.windows.load<swit>();
    const Start start = parse_command_line(line, names_a_file);
    if (start.no_file) context.session.StartMode = 1;
    if (start.view_only) context.session.ViewOnlyRun = true;
    if (start.create) {
        start_creating(context, start.create_htx);
        return false;
    }
    if (start.choose) {
        controls::run(w.another.click);
        return false;
    }
    if (start.hides_options) {
        w.Label1.visible = false;
        return false;
    }
    if (context.routes.show_directory && files::is_directory(start.path)) {
        context.routes.show_directory(start.path);  // it stays the current one
        return false;
    }
    offer_file(context, start.path);
    if (start.unpacks_apart) context.session.WorkDir = w.Text1.text;
    if (start.open_at_once) openarchive(context);
    if (start.view_only) show_contents(context);
    return true;
}

}  // namespace

void start(Context& context) {
    const platform::Machine& machine = context.platform.machine();
    Session& session = context.session;
    auto& w = context.windows.load<swit>();
    connect_main_window(context);
    fix_directories(context);
    place_window(w, machine);
    adapt_to_system(w, machine);
    set_idle_texts(w);
    w.Text1.text = files::join(session.AppDir, "temp");
    if (!session.CommandLine.empty() && !follow_command_line(context, session.CommandLine)) return;
    place_window(w, machine);
    w.Label3.text.clear();
    adapt_to_system(w, machine);
    files::change_directory(session.AppDir);
    w.Text1.text = files::join(session.AppDir, "temp");
}

bool awaits_file(Context& context) {
    bool alone = true;
    context.windows.for_each([&](std::type_index type, const controls::Window&) { alone &= type == typeid(swit); });
    const auto& w = context.windows.load<swit>();
    return alone && !w.Picture2.visible && !w.Picture4.visible;
}

void start_again(Context& context, const std::string& command_line) {
    follow_command_line(context, command_line);
}

std::string in_parent_directory(const Session& session, const std::string& name) {
    return files::join(session.AppParentDir.empty() ? "/" : session.AppParentDir, name);
}

}  // namespace quill::shell
