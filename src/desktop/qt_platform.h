#pragma once

#include "desktop/dialogs.h"
#include "desktop/event_loop.h"
#include "desktop/file_opener.h"
#include "desktop/picture_service.h"
#include "desktop/views.h"
#include "desktop/waited_program.h"
#include "platform/platform.h"

#include <QElapsedTimer>

#include <random>

namespace quill::desktop {

/// The machine of the desktop program.
class DesktopMachine final : public platform::Machine {
  public:
    std::string user_name() const override;
    std::string home_directory() const override;
    std::string system_directory() const override { return "/usr"; }
    std::string user_guide() const override;
    bool has_theme_sizing() const override { return false; }
    int screen_width() const override;
    int screen_height() const override;
    double twips_per_pixel() const override;
    int random(int bound) override;

  private:
    std::minstd_rand generator_{std::random_device{}()};
};

/// A machine that can open no device.
class NoMedia final : public platform::Media {
  public:
    std::string command(const std::string&) override { return "There is no media device of this name."; }
};

/// Draws windows while an action runs, at most about twenty-five times a second. A short action is not shown, so that
/// nothing flickers.
class ViewDisplay final : public platform::Display {
  public:
    ViewDisplay(EventLoop& events, Views& views);

    void repaint(controls::Window& window) override;

  private:
    EventLoop& events_;
    Views& views_;
    QElapsedTimer since_last_;
};

/// The services of the program on Qt.
class QtPlatform final : public platform::Platform {
  public:
    QtPlatform(EventLoop& events, Views& views);

    BoxDialogs& dialogs() override { return dialogs_; }
    FileOpener& opener() override { return opener_; }
    WaitedPrograms& programs() override { return programs_; }
    NoMedia& media() override { return media_; }
    DesktopMachine& machine() override { return machine_; }
    ViewDisplay& display() override { return display_; }
    PictureService& pictures() override { return pictures_; }

  private:
    BoxDialogs dialogs_;
    FileOpener opener_;
    WaitedPrograms programs_;
    NoMedia media_;
    DesktopMachine machine_;
    ViewDisplay display_;
    PictureService pictures_;
};

}  // namespace quill::desktop
