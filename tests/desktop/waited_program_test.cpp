#include "desktop/waited_program.h"

#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace quill::tests {
namespace {

using platform::ProgramEnd;

class WaitedPrograms : public testing::Test {
  protected:
    /// Returns a scanner whose answer depends on the file that it gets.
    std::string script(const std::string& commands) {
        directory_.write("scanner", "#!/bin/sh\n" + commands + "\n");
        std::filesystem::permissions(directory_.path("scanner"), std::filesystem::perms::owner_all);
        return directory_.path("scanner");
    }
    static bool always() { return true; }
    bool is_running_yet() const { return directory_.has("own") && !directory_.read("own").empty(); }
    /// Returns true if the process is still there after five seconds: the system may take a moment to end it.
    static bool runs(const std::string& process) {
        const std::filesystem::path program = "/proc/" + process + "/exe";
        for (int i = 0; i < 500 && std::filesystem::exists(program); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return std::filesystem::exists(program);
    }

    TemporaryDirectory directory_;
    desktop::WaitedPrograms programs_;
};

TEST_F(WaitedPrograms, TheEndOfAProgramIsReported) {
    const std::string scanner = script("case $(cat \"$1\") in bad) exit 1;; odd) exit 2;; dead) kill -9 $$;; esac");
    const struct {
        const char* bytes;
        ProgramEnd end;
        int status;
    } table[] = {{"good", ProgramEnd::exited, 0},
                 {"bad", ProgramEnd::exited, 1},
                 {"odd", ProgramEnd::exited, 2},
                 {"dead", ProgramEnd::killed, 0}};
    for (const auto& row : table) {
        directory_.write("a file", row.bytes);
        const auto result = programs_.run(scanner, {directory_.path("a file")}, always);
        EXPECT_EQ(result.end, row.end) << row.bytes;
        EXPECT_EQ(result.status, row.status) << row.bytes;
    }
    directory_.write("plain", "x");
    EXPECT_EQ(programs_.run(directory_.path("absent"), {}, always).end, ProgramEnd::not_started);
    EXPECT_EQ(programs_.run(directory_.path("plain"), {}, always).end, ProgramEnd::not_started);
    EXPECT_EQ(programs_.find("sh").substr(0, 1), "/");
    EXPECT_EQ(programs_.find("no program has this name"), "");
}

TEST_F(WaitedPrograms, TheWaitEndsWhereTheSystemKeepsNoStatus) {
    const auto former = std::signal(SIGCHLD, SIG_IGN);
    unsigned questions = 0;
    const auto result = programs_.run(script("exit 0"), {}, [&] { return ++questions < 500; });
    std::signal(SIGCHLD, former);
    EXPECT_EQ(result.end, ProgramEnd::killed);
}

TEST_F(WaitedPrograms, StoppingEndsTheProgramAndThoseThatItStarted) {
    for (const char* patience : {"", "trap '' TERM;"}) {
        const std::string scanner =
            script(std::string(patience) + "sleep 60 & echo $! > child; echo $$ > own; wait; sleep 60");
        std::filesystem::remove("child");
        std::filesystem::remove("own");
        unsigned questions = 0;
        const auto begin = std::chrono::steady_clock::now();
        const auto goes_on = [&] { return ++questions < 3 || !is_running_yet(); };
        EXPECT_EQ(programs_.run(scanner, {}, goes_on).end, ProgramEnd::stopped);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
        for (const char* name : {"child", "own"}) {
            const std::string process = directory_.read(name);
            EXPECT_FALSE(runs(process.substr(0, process.find('\n')))) << name;
        }
    }
}

TEST_F(WaitedPrograms, AFailureOfTheCallerEndsTheProgram) {
    const std::string scanner = script("echo $$ > own; exec sleep 60");
    const auto fails = [&]() -> bool {
        if (!is_running_yet()) return true;
        throw std::runtime_error("closed");
    };
    EXPECT_THROW(programs_.run(scanner, {}, fails), std::runtime_error);
    const std::string process = directory_.read("own");
    EXPECT_FALSE(runs(process.substr(0, process.find('\n'))));
}

}  // namespace
}  // namespace quill::tests
