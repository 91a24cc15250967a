#pragma once

#include "controls/windows.h"
#include "shell/main_window.h"
#include "shell/session.h"
#include "support/scripted_platform.h"

namespace quill::tests {

/// The program without a desktop: its shared variables, its windows with the main window loaded, a scripted machine.
struct Program {
    shell::Session session;
    ScriptedPlatform platform;
    controls::Windows windows;
    shell::Routes routes;
    shell::Context context{session, windows, platform, routes};
    shell::swit& main_window = windows.load<shell::swit>();
};

/// Runs `action` and returns true if it ended the process.
template <class F>
bool ends_process(F&& action) {
    try {
        action();
    } catch (const platform::ProcessEnd&) {
        return true;
    }
    return false;
}

}  // namespace quill::tests
