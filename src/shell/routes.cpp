#include "shell/routes.h"

#include "platform/platform.h"

namespace quill::shell {

void say_not_yet(platform::Platform& platform, const std::string& what) {
    platform.message("Quillbright Pro can't " + what + " yet.");
}

void show_pictures(platform::Platform& platform, const Routes& routes, const std::vector<std::string>& paths) {
    if (routes.show_pictures) {
        routes.show_pictures(paths);
    } else {
        say_not_yet(platform, "show pictures");
    }
}

void follow(platform::Platform& platform, const controls::Action& route, const std::string& what) {
    if (route) {
        route();
    } else {
        say_not_yet(platform, what);
    }
}

}  // namespace quill::shell
