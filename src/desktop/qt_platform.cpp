#include "desktop/qt_platform.h"

#include "files/directory.h"
#include "files/path.h"

#include <QGuiApplication>
#include <QScreen>

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace quill::desktop {
namespace {

constexpr int twips_per_pixel_of_layout = 15;
constexpr qint64 frame_time = 40;  // milliseconds between two repaints of a long run
constexpr qint64 patience = 150;   // milliseconds before a run is shown

}  // namespace

std::string DesktopMachine::user_name() const {
    const passwd* user = getpwuid(getuid());
    return user != nullptr ? user->pw_name : std::string();
}

std::string DesktopMachine::home_directory() const {
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home == '/') return home;
    const passwd* user = getpwuid(getuid());
    return user != nullptr ? user->pw_dir : std::string();
}

std::string DesktopMachine::user_guide() const {
    const std::string program = files::dir_of(QCoreApplication::applicationFilePath().toStdString());
    for (const char* place : {"qbguide/index.html", "../share/quillbright/qbguide/index.html"}) {
        if (std::string guide = files::join(program, place); files::exists(guide)) return guide;
    }
    return {};
}

int DesktopMachine::screen_width() const {
    return QGuiApplication::primaryScreen()->availableGeometry().width() * twips_per_pixel_of_layout;
}

int DesktopMachine::screen_height() const {
    return QGuiApplication::primaryScreen()->availableGeometry().height() * twips_per_pixel_of_layout;
}

double DesktopMachine::twips_per_pixel() const {
    return twips_per_pixel_of_layout / QGuiApplication::primaryScreen()->devicePixelRatio();
}

int DesktopMachine::random(int bound) {
    return std::uniform_int_distribution<int>(0, bound - 1)(generator_);
}

ViewDisplay::ViewDisplay(EventLoop& events, Views& views) : events_(events), views_(views) {}

void ViewDisplay::repaint(controls::Window& window) {
    if (events_.running_for() < patience) return;
    if (since_last_.isValid() && since_last_.elapsed() < frame_time) return;
    views_.sync(window);
    events_.breathe();
    since_last_.start();
}

QtPlatform::QtPlatform(EventLoop& events, Views& views)
    : dialogs_(events, views), display_(events, views), pictures_(events) {
    opener_.say = [this](const std::string& text) { dialogs_.message(text, {}); };
}

}  // namespace quill::desktop
