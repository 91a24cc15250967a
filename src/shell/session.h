#pragma once

#include "controls/windows.h"
#include "platform/platform.h"
#include "shell/routes.h"

#include <string>
#include <vector>

namespace quill::viewer {
struct frmPic;
}

namespace quill::shell {

/// The shared variables of the process. One instance, passed by reference.
struct Session {
    std::string CommandLine;  ///< the process's arguments as one line, blanks quoted

    std::string AppDir;        ///< the current directory at the start of the process
    std::string AppParentDir;  ///< AppDir without its last name; empty if AppDir is the root
    std::string WindowsDir;    ///< the system's own directory
    std::string UserName;

    std::string SelectedDir;              ///< the directory of the current file
    std::string SelectedFile;             ///< its bare name
    std::vector<std::string> RecentDirs;  ///< directories where files were chosen in this run, the latest first

    std::string WorkDir;  ///< the directory of the current operation: the target of unpacking

    int StartMode = 0;  ///< effect of closing the archive window: 1 back to the main window, 3 nothing, else the end
    bool ViewOnlyRun = false;  ///< closing the contents window ends the process

    std::string EncodedPath;   ///< the input file of the decoder's run
    bool NamingTaken = false;  ///< the naming window has taken over from this run of the decoder
    std::string SkipName;      ///< lower-case name of a work file that is not a result
    int DecodePass = 0;        ///< passes of `undectwo` since the last reset

    std::string ZipPassword;    ///< password of the open archive; empty for none
    bool ZipEncrypted = false;  ///< a password is needed

    /// Size and place of the book window, in twips. BookWidth 0: the user has not sized it.
    float BookWidth = 0, BookHeight = 0, BookTop = 0, BookLeft = 0;

    std::string Scanner;  ///< the anti-virus program of this run; empty before it is chosen

    std::string FavListPath;    ///< the current favorites list
    int PicsMode = 0;           ///< the open album: 0 none, 1 of form `xyz`, 2 of form `abc`
    bool OpenerLoaded = false;  ///< the window that opens pictures is loaded
    /// The picture windows: slot n is at n - 1. A slot is never reused; nullptr if its window is gone.
    std::vector<viewer::frmPic*> PicsTable;
};

/// What nearly every operation needs: the shared variables, the windows, the machine, and the routes to higher layers.
struct Context {
    Session& session;
    controls::Windows& windows;
    platform::Platform& platform;
    Routes& routes;
};

}  // namespace quill::shell
