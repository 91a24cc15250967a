#pragma once

#include "controls/control.h"

#include <functional>
#include <string>
#include <vector>

namespace quill::platform {
class Platform;
}

namespace quill::shell {

/// Calls from the main window to operations and windows in higher layers. Each provider fills in its own; while one is
/// empty, the program reports that it can't do this yet.
struct Routes {
    std::function<void(std::string& path)> decode;  ///< decodes the file; may change the path

    /// Opens the file chooser, set up to open, view or decode.
    std::function<void(const std::string& directory)> open_chooser;

    controls::Action report_contents;  ///< lists SelectedDir/SelectedFile; sets ZipEncrypted if a member requires it
    controls::Action open_archive;     ///< the archive window on SelectedDir/SelectedFile
    controls::Action show_contents;    ///< the contents window on SelectedDir/SelectedFile
    controls::Action scan_file;        ///< checks SelectedDir/SelectedFile with an anti-virus program
    /// Opens the file chooser, to pick an anti-virus program that then checks the file at `path`.
    std::function<void(const std::string& path)> choose_scanner;

    std::function<void(const std::string& path)> open_pics;  ///< a PICS file into the viewer
    controls::Action open_pictures;                          ///< the window that opens pictures into the viewer
    controls::Action open_favorites;                         ///< the favorites lists
    std::function<void(const std::string& directory)> show_directory;  ///< the pictures of a directory
    /// Shows the pictures among `paths` as one set in the viewer.
    std::function<void(const std::vector<std::string>& paths)> show_pictures;

    controls::Action create_archive;  ///< the create wizard's first step after the choice of a kind
    controls::Action next_creating;   ///< continues from the wizard's current step
    controls::Action size_book;       ///< lets the user size the window of the new book
    std::function<void(const std::string& caption)> open_encoder;  ///< the chooser, its caption naming what to make
    /// Opens the picture wizard with the files at `pictures`.
    using MakeOfPictures = std::function<void(const std::vector<std::string>& pictures)>;
    MakeOfPictures make_picture_book;  ///< for HTX
    MakeOfPictures make_pics_file;     ///< for PICS

    controls::Action make_zip_default;  ///< be the default program for ZIP files
    controls::Action edit_file_types;   ///< default settings of other file types
};

/// Reports that the program can't do `what` ("open ZIP files") yet.
void say_not_yet(platform::Platform& platform, const std::string& what);

/// Shows the pictures among the files at `paths` in the viewer, or reports that the program can't do so yet.
void show_pictures(platform::Platform& platform, const Routes& routes, const std::vector<std::string>& paths);

/// Calls the route, or reports that the program can't do `what` yet.
void follow(platform::Platform& platform, const controls::Action& route, const std::string& what);

}  // namespace quill::shell
