#include "encoder/encode_file.h"

#include "encoder/file_chooser.h"
#include "encoder/yenc_encode.h"
#include "files/directory.h"
#include "support/abandoned_file.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "viewer/save_pictures.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <tuple>

namespace quill::encoder {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

/// The program with its chooser open in an empty directory.
class EncodeFile : public testing::Test {
  protected:
    EncodeFile() {
        program.session.AppDir = program.session.AppParentDir = dir.path();
        program.main_window.visible = false;
    }

    cmdg& open_chooser() { return show_chooser(program.context, ChooserMode::encode_uue, dir.path()); }

    void expect_chooser_left() {
        EXPECT_EQ(program.windows.loaded<cmdg>(), nullptr);
        EXPECT_TRUE(program.main_window.visible);
    }

    tests::TemporaryDirectory dir;
    tests::Program program;
};

TEST_F(EncodeFile, EachKindHasItsExtensionBehindTheFirstDot) {
    const std::vector<std::string> outputs = {"old.UUE", "old.MME", "old.HQX", "old.XXE"};
    const std::string path = dir.write("old.photo.jpg", "bytes");
    for (int kind = 1; kind <= 4; ++kind) {
        open_chooser();
        program.main_window.Label3.text = path;
        program.platform.expect_message("Done.");
        encod(program.context, kind, path);
        EXPECT_TRUE(dir.has(outputs[static_cast<std::size_t>(kind) - 1]));
        EXPECT_EQ(program.main_window.Label3.text, "");
        expect_chooser_left();
    }
}

TEST_F(EncodeFile, WhatAKillLeftIsRemoved) {
    const std::string left = tests::write_abandoned(dir);
    const std::string path = dir.write("a.txt", "bytes");
    open_chooser();
    program.platform.expect_message("Done.");
    encod(program.context, 1, path);
    EXPECT_FALSE(dir.has(left));
    EXPECT_TRUE(dir.has("a.UUE"));
}

TEST_F(EncodeFile, TheNewFileShowsInTheChooserBeforeDoneIsSaid) {
    const std::string path = dir.write("a.txt", "bytes");
    cmdg& chooser = open_chooser();
    program.platform.expect_message("Done.",
                                    [&] { EXPECT_THAT(chooser.File1.items(), ElementsAre("a.txt", "a.UUE")); });
    encod(program.context, 1, path);
    program.platform.expect_message("Done.");
    open_chooser();
    yencod(program.context, path);
    EXPECT_TRUE(dir.has("a.ync"));
    expect_chooser_left();
}

TEST_F(EncodeFile, AFailureIsSaidInsteadOfDone) {
    const std::string path = dir.write("a.UUE", "precious");
    program.platform.expect_message("would replace the input");
    encod(program.context, 1, path);
    EXPECT_EQ(dir.read("a.UUE"), "precious");
    program.platform.expect_message("could not be encoded");
    encod(program.context, 2, dir.path("absent.txt"));
    EXPECT_THAT(dir.names(), ElementsAre("a.UUE"));
}

TEST_F(EncodeFile, YencSaysAFailureInsteadOfDone) {
    const std::string path = dir.write("a.ync", "precious");
    open_chooser();
    program.platform.expect_message("would replace the input");
    yencod(program.context, path);
    EXPECT_EQ(dir.read("a.ync"), "precious");
    expect_chooser_left();
    program.platform.expect_message("could not be encoded");
    yencod(program.context, dir.path() + "/");
    EXPECT_THAT(dir.names(), ElementsAre("a.ync"));
}

/// Encodes a file as UUE (1) or yEnc (0).
void encode(shell::Context& context, int kind, const std::string& path) {
    kind == 0 ? yencod(context, path) : encod(context, kind, path);
}

struct Answer {
    platform::Collision collision;
    bool keeps_old;
    bool makes_new;
};

TEST_F(EncodeFile, AFileOfTheOutputsNameIsReplacedOnlyWhereTheUserSaysSo) {
    using platform::Collision;
    for (const auto& [kind, output, second] : {std::tuple{1, "a.UUE", "a (2).UUE"}, {0, "a.ync", "a (2).ync"}}) {
        for (const Answer& c : {Answer{Collision::cancel, true, false}, Answer{Collision::keep_both, true, true},
                                Answer{Collision::replace, false, false}}) {
            const std::string path = dir.write("a.txt", "bytes");
            dir.write(output, "older");
            program.main_window.Label3.text = path;
            open_chooser();
            program.platform.expect_collision(dir.path(output), c.collision);
            const bool stays = c.collision == Collision::cancel;
            if (!stays) program.platform.expect_message("Done.");
            encode(program.context, kind, path);
            EXPECT_EQ(dir.read(output) == "older", c.keeps_old);
            EXPECT_EQ(dir.has(second), c.makes_new);
            EXPECT_EQ(program.windows.loaded<cmdg>() != nullptr, stays);
            files::remove_file(dir.path(second));
        }
    }
}

TEST_F(EncodeFile, AStopLeavesNothingAndTheChooserStays) {
    const std::string path = dir.write("a.txt", std::string(2'000'000, 'x'));
    for (const int kind : {0, 1, 2, 3, 4}) {
        cmdg& chooser = open_chooser();
        std::string doing;
        program.platform.on_repaint = [&](controls::Window&) {
            auto* panel = program.windows.loaded<viewer::SavPic>();
            if (panel == nullptr || panel->Picture2.left == 0) return;
            EXPECT_TRUE(panel->visible && panel->stop.visible);
            doing = panel->doing.text;
            controls::run(panel->stop.click);
        };
        encode(program.context, kind, path);
        EXPECT_THAT(doing, StartsWith("Encoding a.txt as a."));
        EXPECT_THAT(dir.names(), ElementsAre("a.txt"));
        EXPECT_EQ(program.windows.loaded<cmdg>(), &chooser);
        EXPECT_EQ(program.windows.loaded<viewer::SavPic>(), nullptr);
        EXPECT_EQ(chooser.pointer, controls::MousePointer::normal);
    }
}

TEST_F(EncodeFile, ThePointerIsBusyWhileYencIsMade) {
    const std::string path = dir.write("a.txt", "bytes");
    cmdg& chooser = open_chooser();
    std::vector<controls::MousePointer> seen;
    program.platform.on_repaint = [&](controls::Window& window) { seen.push_back(window.pointer); };
    program.platform.expect_message("Done.", [&] { EXPECT_EQ(chooser.pointer, controls::MousePointer::normal); });
    yencod(program.context, path);
    EXPECT_THAT(seen, Contains(controls::MousePointer::busy));
}

}  // namespace
}  // namespace quill::encoder
