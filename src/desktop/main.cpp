#include "desktop/application.h"
#include "desktop/desktop.h"
#include "desktop/display.h"
#include "desktop/signs.h"
#include "desktop/text_editor.h"
#include "files/atomic_file.h"
#include "files/path.h"
#include "integration/favorites.h"
#include "shell/command_line.h"
#include "shell/startup.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int no_display = 3;
constexpr int no_data_directory = 4;

}  // namespace

int main(int argc, char** argv) {
    using namespace quill;
    files::let_oversized_writes_fail();
    if (!desktop::has_display()) {
        std::fputs("quillbright: there is no display to open a window on. In a terminal, use: quill decode FILE...\n",
                   stderr);
        return no_display;
    }
    desktop::EventLoop events;
    desktop::Application application(argc, argv, events);  // removes Qt's own options
    application.setWindowIcon(desktop::program_icon());
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string command_line = shell::command_line_of(arguments);
    if (const Status entered = shell::enter_program_directory(shell::data_directory()); !entered) {
        std::fprintf(stderr, "quillbright: %s can't be used: %s\n", shell::data_directory().c_str(),
                     entered.error().text.c_str());
        return no_data_directory;
    }
    integration::make_first_favorites(files::join(shell::data_directory(), "favorites"));
    int status = 0;
    {
        desktop::Desktop program(events);
        program.start(command_line);
        status = events.run();
    }
    desktop::wait_for_editors();
    return status;
}
