#pragma once

#include "files/directory.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "viewer/frame_window.h"
#include "viewer/open_document.h"
#include "viewer/open_pictures.h"
#include "viewer/picture_window.h"
#include "viewer/thumbnail_column.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::viewer {

using controls::run;

/// The program with its directories and one of pictures, which is the current one. The screen has 1000 x 800 pixels.
class ViewerTest : public ::testing::Test {
  protected:
    ViewerTest() {
        session.AppParentDir = dir_.path();
        session.AppDir = dir_.make_directory("program");
        session.FavListPath = dir_.path("program/default.fpl");
        dir_.make_directory("program/temp");
        dir_.make_directory("zip-htx directory");
        photos_ = dir_.make_directory("photos");
        files::change_directory(photos_);
        program_.platform.width_of_screen = 1000 * 15;
        program_.platform.height_of_screen = 800 * 15;
    }

    /// Writes a picture file that decodes to `width` x `height` pixels, and returns its path.
    std::string picture(const std::string& name, int width = 40, int height = 30) {
        const std::string path = dir_.write(name, "pixels");
        pictures().set(path, tests::plain_picture(width, height, 0xFF336699));
        return path;
    }

    tests::FakePictures& pictures() { return program_.platform.fake_pictures; }

    /// Opens the column on the directory of pictures.
    tittwo& column() {
        tittwo& w = show_column(program_.context);
        w.List2.assign({photos_});
        imgrefresh(w);
        return w;
    }

    /// Opens a picture file and lets it be decoded.
    frmPic& open(const std::string& path) {
        frmPic& w = opendoc(program_.context, path, path);
        pictures().answer_all();
        return w;
    }

    std::size_t open_windows() const {
        std::size_t count = 0;
        for (const frmPic* window : session.PicsTable) count += window != nullptr ? 1 : 0;
        return count;
    }

    tests::TemporaryDirectory dir_;
    tests::Program program_;
    shell::Session& session = program_.session;
    std::string photos_;
};

}  // namespace quill::viewer
