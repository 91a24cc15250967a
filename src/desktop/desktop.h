#pragma once

#include "controls/windows.h"
#include "desktop/event_loop.h"
#include "desktop/qt_platform.h"
#include "desktop/running_instance.h"
#include "desktop/viewer/viewer_frame.h"
#include "desktop/views.h"
#include "shell/routes.h"
#include "shell/session.h"
#include "zip/new_zip.h"

#include <memory>
#include <string>

namespace quill::desktop {

/// The program on the user's desktop: its shared variables, its windows with their views, the machine, and the routes
/// from the main window to everything else. Needs a QApplication.
class Desktop {
  public:
    explicit Desktop(EventLoop& events);
    ~Desktop();

    /// Starts the program on `command_line` and draws the windows that this opens.
    void start(const std::string& command_line);

    /// Starts the program without a file after a session that has ended: the main window shows what happened.
    void start_again(const platform::SessionEnd& last);

    /// Takes over the files of later starts from now on. Needs a bus of the user's session.
    void receive_later_starts();

    shell::Context& context() { return context_; }
    Views& views() { return views_; }

  private:
    void add_views();
    void provide_routes();
    void open_own_windows();
    void accept_dropped_files();

    EventLoop& events_;
    shell::Session session_;
    controls::Windows windows_;
    shell::Routes routes_;
    ViewerDesk desk_;
    Views views_;
    QtPlatform platform_;
    shell::Context context_{session_, windows_, platform_, routes_};
    zip::NewZIP archives_{context_};
    std::unique_ptr<RunningInstance> instance_;
};

}  // namespace quill::desktop
