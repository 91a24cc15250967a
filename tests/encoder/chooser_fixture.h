#pragma once

#include "encoder/file_chooser.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace quill::encoder {

/// The program with a directory for mail, in which the chooser opens.
class FileChooser : public ::testing::Test {
  protected:
    FileChooser() {
        program_.session.AppParentDir = dir_.path();
        std::filesystem::create_directory(dir_.path("favorites"));
        std::filesystem::create_directory(dir_.path("mail"));
    }

    cmdg& show(ChooserMode mode) { return show_chooser(program_.context, mode, dir_.path("mail")); }
    bool is_loaded() { return program_.windows.loaded<cmdg>() != nullptr; }
    /// Shows the merge page with the first two files of the directory on its list.
    cmdg& show_two_parts() {
        cmdg& w = show(ChooserMode::open);
        w.File2.selected_rows = {0, 1};
        controls::run(w.Command7.click);
        return w;
    }
    static void select(controls::ListBox& list, const std::string& name) {
        const auto& items = list.items();
        list.selected = static_cast<std::size_t>(std::find(items.begin(), items.end(), name) - items.begin());
        ASSERT_LT(*list.selected, items.size()) << name;
        controls::run(list.change);
    }

    tests::TemporaryDirectory dir_;
    tests::Program program_;
};

}  // namespace quill::encoder
