#include "shell/startup.h"

#include "files/directory.h"
#include "shell/about_box.h"
#include "shell/select_file.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace quill::shell {
namespace {

using tests::Program;
using tests::TemporaryDirectory;

/// The program in a directory with everything it expects, ready to start.
class Startup : public testing::Test {
  protected:
    Startup() {
        dir.make_directory("quill/program/temp");
        dir.make_directory("quill/zip-htx directory");
        files::change_directory(dir.path("quill/program"));
        program.routes.report_contents = [this] { program.session.ZipEncrypted = encrypted; };
        program.routes.open_archive = [this] { done += "archive "; };
        program.routes.show_contents = [this] { done += "contents "; };
    }

    void start_with(const std::string& line) {
        program.session.CommandLine = line;
        start(program.context);
    }

    TemporaryDirectory dir;
    Program program;
    Session& session = program.session;
    swit& w = program.main_window;
    bool encrypted = false;
    std::string done;  ///< the opened windows
};

TEST_F(Startup, FixesTheDirectoriesAndTheWindow) {
    program.platform.width_of_screen = 30000;
    program.platform.height_of_screen = 20000;
    start_with("");
    EXPECT_EQ(session.AppDir, dir.path("quill/program"));
    EXPECT_EQ(session.AppParentDir, dir.path("quill"));
    EXPECT_EQ(session.WindowsDir, "/usr");
    EXPECT_EQ(session.UserName, "ada");
    EXPECT_EQ(session.FavListPath, dir.path("quill/program/default.fpl"));
    EXPECT_EQ(w.Text1.text, dir.path("quill/program/temp"));
    EXPECT_EQ(w.width, 10755);
    EXPECT_EQ(w.height, 7215);
    EXPECT_EQ(w.left, (30000 - 10755) / 2);
    EXPECT_EQ(w.top, (20000 - 7215) / 2);
    EXPECT_EQ(w.Picture4.width, w.Picture1.width);
    EXPECT_EQ(session.StartMode, 0);
}

TEST_F(Startup, ADirectoryShowsItsPictures) {
    std::string shown;
    program.routes.show_directory = [&](const std::string& directory) { shown = directory; };
    start_with(dir.path());
    EXPECT_EQ(shown, dir.path());
    EXPECT_EQ(w.Text1.text, dir.path("quill/program/temp"));
    EXPECT_EQ(w.apt(1).text, "Select/Open/View a file");
}

TEST_F(Startup, ASwitchOpensTheChooser) {
    program.routes.open_chooser = [this](const std::string& directory) { done += "chooser in " + directory; };
    start_with("/de");
    EXPECT_EQ(done, "chooser in " + dir.path("quill/zip-htx directory"));
}

TEST_F(Startup, ALaterStartIsReceivedOnlyByTheStartPanelAlone) {
    start_with("");
    EXPECT_TRUE(awaits_file(program.context));
    start_again(program.context, "\"" + dir.write("my mail.mim", "x") + "\"");
    EXPECT_EQ(w.apt(1).text, "Decode/open my mail.mim");
    EXPECT_TRUE(awaits_file(program.context));

    for (controls::Picture* panel : {&w.Picture2, &w.Picture4}) {
        panel->visible = true;
        EXPECT_FALSE(awaits_file(program.context));
        panel->visible = false;
    }
    program.windows.load<AboutBox>();
    EXPECT_FALSE(awaits_file(program.context));
}

TEST_F(Startup, InTheRootDirectoryThereIsNoDirectoryAbove) {
    files::change_directory("/");
    start_with("");
    EXPECT_EQ(session.AppDir, "/");
    EXPECT_EQ(session.AppParentDir, "");
    EXPECT_EQ(w.Text1.text, "/temp");
    EXPECT_EQ(in_parent_directory(session, "system/temp"), "/system/temp");
}

TEST_F(Startup, ThemeSizingIsOfferedOnlyWhereItMeansSomething) {
    w.xpth.checked = true;
    start_with("");
    EXPECT_FALSE(w.xpmen.visible);
    EXPECT_FALSE(w.xpth.checked);

    Program other;
    other.platform.theme_sizing = true;
    other.main_window.xpth.checked = true;
    start(other.context);
    EXPECT_TRUE(other.main_window.xpmen.visible);
    EXPECT_TRUE(other.main_window.xpth.checked);
}

/// Each kind of start: its line (`@` is the directory of the files), and the visible result.
struct Kind {
    const char* line;
    const char* first_option;
    int start_mode;
    bool heading;
    bool wizard;
    const char* windows;
    const char* selected;
    const char* work_dir;
};

constexpr auto idle = "Select/Open/View a file";

const Kind kinds[] = {
    {"", idle, 0, true, false, "", "", ""},
    {"?", idle, 1, false, false, "", "", ""},
    {"@/a.mim", "Decode/open a.mim", 0, true, false, "", "a.mim", "@"},
    {"\"@/my mail.mim\"", "Decode/open my mail.mim", 0, true, false, "", "my mail.mim", "@"},
    {"@/gone.mim", "Decode/open gone.mim", 0, true, false, "", "gone.mim", "@"},
    {"@/empty.mim", idle, 0, true, false, "", "empty.mim", "@"},
    {"/un @/x.zip", "Decode/open x.zip", 0, true, false, "archive ", "x.zip", "@"},
    {"/vi @/x.zip", "Decode/open x.zip", 0, true, false, "contents ", "x.zip", "@"},
    {"/un", idle, 0, false, false, "", "", ""},
    {"/ue", idle, 0, true, true, "", "", "@/quill/system/temp"},
    {"/um and more", idle, 0, true, true, "", "", "@/quill/system/temp"},
};

std::string in_directory(std::string text, const std::string& directory) {
    const std::size_t at = text.find('@');
    return at == std::string::npos ? text : text.replace(at, 1, directory);
}

class KindOfStart : public Startup, public testing::WithParamInterface<Kind> {};

TEST_P(KindOfStart, LeavesTheWindowAsTold) {
    const Kind& kind = GetParam();
    dir.write("a.mim", "x");
    dir.write("my mail.mim", "x");
    dir.write("empty.mim", "");
    dir.write("x.zip", "x");
    start_with(in_directory(kind.line, dir.path()));
    EXPECT_EQ(w.apt(1).text, kind.first_option);
    EXPECT_EQ(session.StartMode, kind.start_mode);
    EXPECT_EQ(w.Label1.visible, kind.heading);
    EXPECT_EQ(w.Picture4.visible, kind.wizard);
    EXPECT_EQ(w.Timer2.enabled, !kind.wizard);
    EXPECT_EQ(done, kind.windows);
    EXPECT_EQ(session.SelectedFile, kind.selected);
    EXPECT_EQ(session.WorkDir, in_directory(kind.work_dir, dir.path()));
    EXPECT_EQ(w.apt(3).visible, session.SelectedFile == "x.zip");
    EXPECT_EQ(w.opt(3).visible, w.apt(3).visible);
    EXPECT_EQ(w.Label3.text, "");
    EXPECT_TRUE(files::is_directory(w.Text1.text) || kind.wizard);
}

INSTANTIATE_TEST_SUITE_P(All, KindOfStart, testing::ValuesIn(kinds),
                         [](const auto& kind) { return std::to_string(kind.index); });

TEST_F(Startup, TheCreateSwitchesWorkInTheSystemsTemp) {
    start_with("/um");
    EXPECT_EQ(w.Label2.text, "Creating a new HTX file");
    EXPECT_EQ(w.Text1.text, dir.path("quill/system/temp"));
    EXPECT_EQ(session.SelectedDir, dir.path("quill/zip-htx directory"));
    EXPECT_EQ(files::current_directory(), dir.path("quill/zip-htx directory"));
}

TEST_F(Startup, ViewingEndsTheProcessLater) {
    start_with("/vi " + dir.path("x.zip"));
    EXPECT_TRUE(session.ViewOnlyRun);
}

TEST_F(Startup, AFileInTheRootKeepsTheSlashOfItsDirectory) {
    start_with("/gone.mim");
    EXPECT_EQ(session.SelectedDir, "/");
    EXPECT_EQ(selected_path(session), "/gone.mim");
}

TEST_F(Startup, AnEncryptedArchiveAsksForItsPassword) {
    encrypted = true;
    program.platform.expect_input("This ZIP or HTX file is password encoded. Type in", "secret");
    start_with("/un " + dir.path("x.ZIP"));
    EXPECT_EQ(session.ZipPassword, "secret");
    EXPECT_TRUE(program.platform.prompts.at(0).secret);
    EXPECT_EQ(done, "archive ");
    EXPECT_EQ(session.StartMode, 0);
}

TEST_F(Startup, NoPasswordEndsTheProcess) {
    encrypted = true;
    program.platform.expect_input("password encoded", "");
    EXPECT_TRUE(tests::ends_process([&] { start_with("/un " + dir.path("x.zip")); }));
    EXPECT_EQ(done, "");
}

TEST_F(Startup, WhatIsMissingIsSaidPlainly) {
    program.routes.open_archive = {};
    program.platform.expect_message("can't open ZIP and HTX files yet");
    start_with("/un " + dir.path("x.zip"));
    EXPECT_EQ(w.apt(1).text, "Decode/open x.zip");
}

TEST(ProgramDirectory, IsMadeForTheUserAloneAndEntered) {
    const TemporaryDirectory dir;
    const std::string data = dir.path("share/quillbright");
    ASSERT_TRUE(enter_program_directory(data).ok());
    EXPECT_EQ(files::current_directory(), data + "/program");
    for (const char* name : {"program/temp", "system/temp", "zip-htx directory", "favorites", "lists"}) {
        struct stat status = {};
        ASSERT_EQ(stat((data + "/" + name).c_str(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777U, 0700U) << name;
    }
    EXPECT_TRUE(enter_program_directory(data).ok());

    const std::string blocked = dir.write("a file", "x") + "/below";
    const Status refused = enter_program_directory(blocked);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::exists);  // a file is in the place of a directory
}

TEST(ProgramDirectory, FollowsTheEnvironment) {
    const auto with = [](const char* data_home) {
        setenv("XDG_DATA_HOME", data_home, 1);
        return data_directory();
    };
    const char* before = std::getenv("XDG_DATA_HOME");
    const std::optional<std::string> kept = before == nullptr ? std::nullopt : std::optional<std::string>(before);
    EXPECT_EQ(with("/data"), "/data/quillbright");
    EXPECT_TRUE(with("relative").ends_with("/.local/share/quillbright"));
    EXPECT_TRUE(with("").ends_with("/.local/share/quillbright"));
    if (kept) {
        setenv("XDG_DATA_HOME", kept->c_str(), 1);
    } else {
        unsetenv("XDG_DATA_HOME");
    }
}

}  // namespace
}  // namespace quill::shell
