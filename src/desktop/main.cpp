#include "desktop/application.h"
#include "desktop/desktop.h"
#include "desktop/signs.h"
#include "desktop/text_editor.h"
#include "files/path.h"
#include "integration/favorites.h"
#include "shell/command_line.h"
#include "shell/startup.h"

#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int no_display = 3;
constexpr int no_data_directory = 4;

bool is_set(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

/// Whether there is a screen to draw on. Qt itself would end the process without one.
bool has_display() {
    if (is_set("DISPLAY") || is_set("WAYLAND_DISPLAY")) return true;
    const char* chosen = std::getenv("QT_QPA_PLATFORM");
    const std::string_view platform = chosen != nullptr ? chosen : "";
    return !platform.empty() && !platform.starts_with("xcb") && !platform.starts_with("wayland");
}

}  // namespace

int main(int argc, char** argv) {
    using namespace quill;
    if (!has_display()) {
        std::fputs("quillbright: there is no display to open a window on. In a terminal, use: quill decode FILE...\n",
                   stderr);
        return no_display;
    }
    desktop::EventLoop events;
    desktop::Application application(argc, argv, events);  // takes Qt's own options away
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
