#include "desktop/application.h"
#include "desktop/desktop.h"
#include "desktop/display.h"
#include "desktop/running_instance.h"
#include "desktop/session_bus.h"
#include "desktop/signs.h"
#include "desktop/text_editor.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/path.h"
#include "integration/favorites.h"
#include "shell/command_line.h"
#include "shell/startup.h"

#include <QApplication>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr int no_display = 3;
constexpr int no_data_directory = 4;

using namespace quill;

bool enter_program_directory() {
    const Status entered = shell::enter_program_directory(shell::data_directory());
    if (entered) return true;
    std::fprintf(stderr, "quillbright: %s can't be used: %s\n", shell::data_directory().c_str(),
                 entered.error().text.c_str());
    return false;
}

/// Runs one session after the other until the user ends the program; each takes over the files of later starts if it
/// `shares`. Returns the exit status.
int run_sessions(desktop::EventLoop& events, const std::string& command_line, bool shares) {
    std::optional<platform::SessionEnd> last;
    for (;;) {
        {
            desktop::Desktop program(events);
            last ? program.start_again(*last) : program.start(command_line);
            if (shares) program.receive_later_starts();
            const int status = events.run();
            last = events.begin_again();
            if (!last) return status;
            QApplication::setQuitOnLastWindowClosed(false);  // the windows of the next session follow
        }
        QApplication::sendPostedEvents();
        QApplication::setQuitOnLastWindowClosed(true);
        if (!enter_program_directory()) return no_data_directory;
    }
}

/// Drops a first argument `/nw`, which asks for a window of its own; returns true if it was there.
bool drop_own_window(std::vector<std::string>& arguments) {
    const bool found = !arguments.empty() && arguments.front() == "/nw" && !shell::names_a_file("/nw");
    if (found) arguments.erase(arguments.begin());
    return found;
}

/// Leaves only the first of several files, and opens each of the others in a window of its own.
void spread(std::vector<std::string>& arguments) {
    if (!desktop::names_only_files(arguments)) return;
    while (arguments.size() > 1) {
        desktop::start_apart(files::absolute(arguments.back()));
        arguments.pop_back();
    }
}

}  // namespace

int main(int argc, char** argv) {
    files::let_oversized_writes_fail();
    if (!desktop::has_display()) {
        std::fputs("quillbright: there is no display to open a window on. In a terminal, use: quill decode FILE...\n",
                   stderr);
        return no_display;
    }
    const bool has_bus = desktop::find_session_bus();
    desktop::EventLoop events;
    desktop::Application application(argc, argv, events);  // removes Qt's own options
    application.setWindowIcon(desktop::program_icon());
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool own_window = drop_own_window(arguments);
    const bool shares = has_bus && desktop::names_only_files(arguments);
    if (shares && !own_window && desktop::hand_over(arguments)) return 0;
    spread(arguments);
    const std::string command_line = shell::command_line_of(arguments);
    if (!enter_program_directory()) return no_data_directory;
    integration::make_first_favorites(files::join(shell::data_directory(), "favorites"));
    const int status = run_sessions(events, command_line, shares);
    desktop::wait_for_editors();
    return status;
}
