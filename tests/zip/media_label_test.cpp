#include "zip/media_label.h"

#include "text/ascii.h"
#include "zip/archive_window_fixture.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using testing::ElementsAre;

TEST(MediaLabel, AClickTogglesTheDeviceAndAnyOtherStateStays) {
    const struct {
        std::string reply;
        std::vector<std::string> commands;
        std::string kept;
    } table[] = {
        {"paused", {"status song mode", "play song"}, "paused"},
        {std::string("playing\0rest", 12), {"status song mode", "pause song"}, "playing"},
        {"Playing", {"status song mode"}, "Playing"},
        {"stopped", {"status song mode"}, "stopped"},
        {"", {"status song mode"}, ""},
    };
    for (const auto& row : table) {
        tests::WindowProgram p(tests::ArchiveBuilder().add("a", "x").finish());
        arcview& w = p.open();
        w.MediaAlias = "song";
        p.platform.media_reply = row.reply;
        controls::run(w.Label21.click);
        EXPECT_EQ(p.platform.media_commands, row.commands) << row.reply;
        EXPECT_EQ(w.MediaReply, row.kept);
    }
}

TEST(MediaLabel, WithoutADeviceTheErrorStaysUnseenAndThePathShows) {
    tests::WindowProgram p(tests::ArchiveBuilder().add("a", "x").finish(), "Letters.zip");
    arcview& w = p.open();
    const std::string path = text::to_lower(p.dir.path("Letters.zip"));
    EXPECT_EQ(w.Label21.text, path);
    controls::run(w.Label21.click);
    w.Label21.text = "song.mp3";
    w.MediaAlias = "";
    controls::run(w.Label21.double_click);
    EXPECT_THAT(p.platform.media_commands, ElementsAre("status  mode", "close "));
    EXPECT_EQ(w.MediaReply, p.platform.media_reply);
    EXPECT_EQ(w.Label21.text, path);
    EXPECT_EQ(w.Label24.text, "Files");
}

}  // namespace
}  // namespace quill::zip
