#include "encoder/chooser_fixture.h"
#include "files/directory.h"
#include "shell/main_window.h"
#include "viewer/save_pictures.h"

#include <gmock/gmock.h>

namespace quill::encoder {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using MergePage = FileChooser;

TEST_F(MergePage, MergedPartsAreOfferedForDecoding) {
    for (const int part : {1, 2, 3}) {
        const std::string number = std::to_string(part);
        dir_.write("mail/p" + number, "=ybegin part=" + number + " line=128 size=3 name=x\r\n=ypart begin=" + number +
                                          " end=" + number + "\r\n" + number + "\r\n=yend size=1 part=" + number +
                                          "\r\n");
    }
    cmdg& w = show(ChooserMode::open);
    w.File2.selected = 2;
    controls::run(w.Command7.click);
    program_.platform.expect_message("There are not enough files on the list to merge.");
    controls::run(w.Command10.click);
    w.File2.selected_rows = {0, 1};
    controls::run(w.Command7.click);
    EXPECT_THAT(w.List7.items(), ElementsAre("p3", "p1", "p2"));
    controls::run(w.Command10.click);
    EXPECT_FALSE(is_loaded());
    EXPECT_EQ(
        dir_.read("mail/merged.txt"),
        "=ybegin part=1 line=128 size=3 name=x\r\n=ypart begin=1 end=1\r\n1\r\n2\r\n3\r\n=yend size=1 part=3\r\n");
    EXPECT_EQ(program_.session.SelectedFile, "merged.txt");
    EXPECT_EQ(program_.session.WorkDir, dir_.path("mail"));
    EXPECT_EQ(program_.main_window.apt(1).text, "Decode/open merged.txt");
    EXPECT_TRUE(program_.main_window.apt(3).visible);
}

TEST_F(MergePage, TheFilesToMergeLieInOneDirectory) {
    dir_.write("parts/a", "x");
    dir_.write("parts/.b", "x");
    cmdg& w = show(ChooserMode::open);
    w.Dir2.path = dir_.path("parts");
    controls::run(w.Dir2.change);
    EXPECT_EQ(w.Dir1.path, dir_.path("mail"));
    program_.platform.expect_message("You must first select a file from the files list on the left.");
    controls::run(w.Command7.click);
    w.File2.selected = 0;
    controls::run(w.Command7.click);
    w.hidden_files.checked = true;
    controls::run(w.hidden_files.click);
    EXPECT_THAT(w.File2.items(), ElementsAre(".b", "a"));
    EXPECT_EQ(w.File2.selected_item(), "a");
    EXPECT_THAT(w.List7.items(), ElementsAre("a"));
    w.Dir1.path = dir_.path();
    controls::run(w.Dir1.change);
    EXPECT_EQ(w.Dir2.path, dir_.path());
    EXPECT_THAT(w.List7.items(), IsEmpty());
}

TEST_F(MergePage, AMergeThatFailsSaysWhyAndThePageStays) {
    dir_.write("mail/a", "=ybegin part=7 line=128 size=3 name=x\r\n=ypart begin=1 end=1\r\n=yend\r\n");
    dir_.write("mail/b", "=ybegin part=8 line=128 size=3 name=x\r\n=ypart begin=1 end=1\r\n=yend\r\n");
    cmdg& w = show_two_parts();
    program_.platform.expect_message("The files could not be merged: Fewer than two of the files", [&] {
        EXPECT_TRUE(w.visible);
        EXPECT_EQ(w.pointer, controls::MousePointer::normal);
    });
    controls::run(w.Command10.click);
    EXPECT_TRUE(is_loaded());
    EXPECT_THAT(w.List7.items(), ElementsAre("a", "b"));
}

TEST_F(MergePage, AnEarlierMergeIsReplacedOnlyWhereTheUserSaysSo) {
    dir_.write("mail/a", "one\r\n");
    dir_.write("mail/b", "two\r\n");
    const auto merge = [&](platform::Collision answer) {
        dir_.write("mail/merged.txt", "older");
        cmdg& w = show_two_parts();
        program_.platform.expect_collision("mail/merged.txt", answer);
        controls::run(w.Command9.click);
        program_.windows.unload<cmdg>();
    };
    merge(platform::Collision::cancel);
    EXPECT_EQ(dir_.read("mail/merged.txt"), "older");
    EXPECT_EQ(program_.session.SelectedFile, "");
    merge(platform::Collision::keep_both);
    EXPECT_EQ(dir_.read("mail/merged.txt"), "older");
    EXPECT_EQ(dir_.read("mail/merged (2).txt"), "one\r\ntwo\r\n");
    EXPECT_EQ(program_.session.SelectedFile, "merged (2).txt");
    merge(platform::Collision::replace);
    EXPECT_EQ(dir_.read("mail/merged.txt"), "one\r\ntwo\r\n");
}

TEST_F(MergePage, AMergeThatIsStoppedLeavesNothingAndThePageStays) {
    dir_.write("mail/a", "one\r\n");
    dir_.write("mail/b", "two\r\n");
    cmdg& w = show_two_parts();
    program_.platform.on_repaint = [&](controls::Window&) {
        if (auto* panel = program_.windows.loaded<viewer::SavPic>()) {
            EXPECT_EQ(panel->doing.text, "Joining 2 files into merged.txt");
            if (panel->Label2.text == "100%") controls::run(panel->stop.click);
        }
    };
    controls::run(w.Command9.click);
    EXPECT_FALSE(files::exists(dir_.path("mail/merged.txt")));
    EXPECT_TRUE(is_loaded() && w.visible);
    EXPECT_EQ(program_.windows.loaded<viewer::SavPic>(), nullptr);
    EXPECT_THAT(w.List7.items(), ElementsAre("a", "b"));
}

TEST_F(MergePage, LeavingTheMergePagePressesNextInAnOpenWizardAlone) {
    int presses = 0;
    program_.main_window.Command1.click = [&] { ++presses; };
    for (const bool in_wizard : {false, true}) {
        program_.main_window.Picture4.visible = in_wizard;
        controls::run(show(ChooserMode::open).Command13.click);
        EXPECT_FALSE(is_loaded());
        EXPECT_EQ(presses, in_wizard ? 1 : 0);
    }
}

TEST_F(MergePage, AMergeOfWhatIsNoPartEndsTheProgramAndOfEmptyFilesToo) {
    dir_.write("mail/a", "no part");
    dir_.write("mail/b", "");
    dir_.write("mail/c", "");
    cmdg& w = show_two_parts();
    program_.platform.expect_message("a is not a multipart yEnc encoded file.");
    EXPECT_TRUE(tests::ends_process([&] { w.Command10.click(); }));
    EXPECT_FALSE(files::exists(dir_.path("mail/merged.txt")));
    controls::run(w.Command8.click);
    EXPECT_THAT(w.List7.items(), IsEmpty());
    w.File2.selected_rows = {1, 2};
    controls::run(w.Command7.click);
    program_.platform.expect_message("This file has no contents");
    EXPECT_TRUE(tests::ends_process([&] { w.Command9.click(); }));
}

}  // namespace
}  // namespace quill::encoder
