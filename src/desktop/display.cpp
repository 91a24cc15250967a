#include "desktop/display.h"

#include "desktop/session_bus.h"
#include "files/path.h"

#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>

namespace quill::desktop {
namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Returns true if somebody is listening at the socket `path`; one that begins with NUL is in the abstract name space.
bool answers(std::string_view path) {
    const int connection = connect_to_socket(path);
    if (connection >= 0) close(connection);
    return connection >= 0;
}

/// Assumes that a server on another machine answers.
bool x_server_answers(const std::string& display) {
    const std::size_t colon = display.rfind(':');
    if (colon == std::string::npos) return answers(display);
    const std::string host = display.substr(0, colon);
    if (!host.empty() && host != "unix") return true;
    const std::string number = display.substr(colon + 1, display.find('.', colon) - colon - 1);
    const std::string path = "/tmp/.X11-unix/X" + number;
    return answers(path) || answers(std::string(1, '\0') + path);
}

bool wayland_server_answers(const std::string& display) {
    if (display.empty()) return false;
    return answers(display.starts_with('/') ? display : files::join(variable("XDG_RUNTIME_DIR"), display));
}

}  // namespace

bool has_display() {
    const std::string platform = variable("QT_QPA_PLATFORM");
    if (!platform.empty() && !platform.starts_with("xcb") && !platform.starts_with("wayland")) return true;
    return wayland_server_answers(variable("WAYLAND_DISPLAY")) ||
           (!variable("DISPLAY").empty() && x_server_answers(variable("DISPLAY")));
}

}  // namespace quill::desktop
