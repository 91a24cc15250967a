#include "support/scripted_platform.h"

#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace quill::tests {
namespace {

TEST(ScriptedPlatform, AnswersInTheOrderOfTheScriptAndRecords) {
    ScriptedPlatform scripted;
    bool looked = false;
    scripted.expect_question("go on", true, [&] { looked = true; });
    scripted.expect_input("name", "photo.jpg");
    scripted.expect_collision("a.UUE", platform::Collision::keep_both);
    scripted.expect_message("done");
    scripted.expect_file_request("Select", "/a/b");

    platform::Platform& platform = scripted;
    EXPECT_TRUE(platform.ask({.text = "Shall I go on?", .no_is_default = true}));
    EXPECT_TRUE(looked);
    EXPECT_EQ(platform.input({.text = "What name?"}), "photo.jpg");
    EXPECT_EQ(platform.ask_about_existing("/d/a.UUE"), platform::Collision::keep_both);
    platform.message("All done.");
    EXPECT_EQ(platform.choose_file({.title = "Select a file"}), "/a/b");
    platform.opener().start("editor", {"a b"}, "/d");

    EXPECT_TRUE(scripted.script_is_done());
    EXPECT_TRUE(scripted.questions.at(0).no_is_default);
    EXPECT_EQ(scripted.messages, std::vector<std::string>{"All done."});
    EXPECT_EQ(scripted.started, (std::vector<ScriptedPlatform::Start>{{"editor", {"a b"}, "/d"}}));
}

TEST(ScriptedPlatform, AnUnscriptedDialogFailsTheTestAndIsANo) {
    ScriptedPlatform scripted;
    platform::Platform& platform = scripted;
    bool yes = true;
    EXPECT_NONFATAL_FAILURE(yes = platform.ask({.text = "Surprise?"}), "unscripted question: \"Surprise?\"");
    EXPECT_FALSE(yes);
}

TEST(ScriptedPlatform, ADialogOutOfOrderFailsTheTest) {
    ScriptedPlatform scripted;
    scripted.expect_message("first");
    platform::Platform& platform = scripted;
    EXPECT_NONFATAL_FAILURE(platform.message("second"), "next is the message with \"first\"");
    platform.message("first");
}

TEST(ScriptedPlatform, ALeftOverStepFailsTheTest) {
    auto scripted = std::make_unique<ScriptedPlatform>();
    scripted->expect_message("never");
    EXPECT_NONFATAL_FAILURE(scripted.reset(), "never shown: the message with \"never\"");
}

TEST(ScriptedPlatform, EndsTheProcessForTheTestToSee) {
    Program program;
    EXPECT_TRUE(ends_process([&] { program.platform.end_process(); }));
    EXPECT_FALSE(ends_process([] {}));
}

TEST(TemporaryDirectory, IsCurrentAndEmptyAndLeavesNothing) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::string path;
    {
        const TemporaryDirectory dir;
        path = dir.path();
        EXPECT_EQ(std::filesystem::current_path(), path);
        EXPECT_TRUE(dir.names().empty());
        EXPECT_EQ(dir.write("sub/.hidden", "a\0b"), path + "/sub/.hidden");
        EXPECT_EQ(dir.names(), std::vector<std::string>{"sub"});
    }
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(std::filesystem::current_path(), before);
}

}  // namespace
}  // namespace quill::tests
