#include "decoder/virus_guard.h"

#include "decoder/results_panel.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <gmock/gmock.h>

namespace quill::decoder {
namespace {

using platform::ProgramEnd;
using platform::ProgramResult;
using shell::ScanAnswer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class VirusGuard : public testing::Test {
  protected:
    void SetUp() override {
        connect_results_panel(program_.context);
        program_.routes.choose_scanner = [this](const std::string& path) { chosen_for_ = path; };
        directory_.write("a.exe", "MZ");
        add_results(w_, directory_.path(), {{"a.exe"}});
    }
    /// Checks the selected row with `scanner`, which is installed.
    void check_with(const std::string& scanner) {
        program_.platform.installed[scanner] = "/usr/bin/" + scanner;
        program_.platform.expect_choice("Check a.exe", "&Check");
        program_.platform.expect_message("a.exe: ");
        controls::run(w_.Command8.click);
    }
    std::optional<ScanAnswer> answer() const { return result_row(w_, 0).scan; }

    tests::TemporaryDirectory directory_;
    tests::Program program_;
    shell::swit& w_ = program_.main_window;
    std::string chosen_for_;
};

TEST_F(VirusGuard, OnlyStatusZeroOfAProgramThatEndedByItselfMeansThatNothingWasFound) {
    const struct {
        ProgramResult result;
        ScanAnswer answer;
    } table[] = {
        {{ProgramEnd::exited, 0}, ScanAnswer::nothing_found},    {{ProgramEnd::exited, 1}, ScanAnswer::found},
        {{ProgramEnd::exited, 2}, ScanAnswer::not_checked},      {{ProgramEnd::exited, 127}, ScanAnswer::not_checked},
        {{ProgramEnd::killed, 0}, ScanAnswer::not_checked},      {{ProgramEnd::stopped, 0}, ScanAnswer::not_checked},
        {{ProgramEnd::not_started, 0}, ScanAnswer::not_checked},
    };
    for (const auto& row : table) {
        add_results(w_, directory_.path(), {{"a.exe"}});
        program_.platform.program_results = {row.result};
        check_with("clamscan");
        EXPECT_EQ(answer(), row.answer) << static_cast<int>(row.result.end) << ' ' << row.result.status;
        EXPECT_EQ(row_details(w_, 0).doubtful, row.answer == ScanAnswer::found);
        EXPECT_EQ(program_.platform.waited_for.back().program, "/usr/bin/clamscan");
        EXPECT_EQ(program_.platform.waited_for.back().arguments.back(), directory_.path("a.exe"));
    }
    EXPECT_THAT(program_.platform.started, IsEmpty());
    EXPECT_EQ(chosen_for_, "");
}

TEST_F(VirusGuard, AFindStaysUntilTheSameBytesAreCheckedAgain) {
    using enum ScanAnswer;
    const struct {
        ProgramResult result;
        ScanAnswer shown;
        bool changes = false;
    } steps[] = {
        {{ProgramEnd::exited, 1}, found}, {{ProgramEnd::stopped, 0}, found},
        {{ProgramEnd::exited, 2}, found}, {{ProgramEnd::exited, 0}, nothing_found},
        {{ProgramEnd::exited, 1}, found}, {{ProgramEnd::exited, 2}, not_checked, true},
    };
    for (const auto& step : steps) {
        if (step.changes) directory_.write("a.exe", "MZ and other bytes");
        program_.platform.program_results = {step.result};
        check_with("clamscan");
        EXPECT_EQ(answer(), step.shown);
    }
}

TEST_F(VirusGuard, StoppingItMeansThatTheFileWasNotChecked) {
    program_.platform.program_results = {{ProgramEnd::exited, 0}};
    program_.platform.while_waiting = [&] {
        EXPECT_THAT(w_.doing.text, HasSubstr("a.exe"));
        controls::run(w_.stop.click);
    };
    program_.platform.installed["clamscan"] = "/usr/bin/clamscan";
    check_with("clamdscan");
    EXPECT_EQ(answer(), ScanAnswer::not_checked);
    EXPECT_EQ(program_.platform.waited_for.size(), 1U) << "the next program is not tried";
    EXPECT_FALSE(w_.stop.visible);
}

TEST_F(VirusGuard, WhereTheServiceDoesNotRunTheOtherProgramIsAsked) {
    program_.platform.installed["clamscan"] = "/usr/bin/clamscan";
    program_.platform.program_results = {{ProgramEnd::exited, 2}, {ProgramEnd::exited, 0}};
    check_with("clamdscan");
    EXPECT_EQ(answer(), ScanAnswer::nothing_found);
    ASSERT_EQ(program_.platform.waited_for.size(), 2U);
    EXPECT_EQ(program_.platform.waited_for[1].program, "/usr/bin/clamscan");
}

TEST_F(VirusGuard, WhatWasNotReadIsNotCalledClean) {
    std::filesystem::rename(directory_.path("a.exe"), directory_.path("real"));
    std::filesystem::create_symlink("real", directory_.path("a.exe"));
    program_.platform.program_results = {{ProgramEnd::exited, 0}, {ProgramEnd::exited, 0}};
    check_with("clamscan");
    const auto& arguments = program_.platform.waited_for.back().arguments;
    EXPECT_THAT(arguments, testing::Contains("--alert-exceeds-max=yes"));
    EXPECT_EQ(arguments.back(), directory_.path("real")) << "a link may be skipped";
    EXPECT_THAT(result_row(w_, 0).scan_text, Not(HasSubstr("limits")));
    program_.session.Scanner.clear();
    check_with("clamdscan");
    EXPECT_THAT(result_row(w_, 0).scan_text, HasSubstr("within its limits"));
    EXPECT_EQ(answer(), ScanAnswer::nothing_found);
}

TEST_F(VirusGuard, AnAnswerIsOfTheBytesThatWereChecked) {
    program_.platform.program_results = {{ProgramEnd::exited, 0}, {ProgramEnd::exited, 0}, {ProgramEnd::exited, 0}};
    program_.platform.while_waiting = [&] { directory_.write("a.exe", "MZ and more"); };
    check_with("clamscan");
    EXPECT_EQ(answer(), ScanAnswer::not_checked) << "it changed meanwhile";
    program_.platform.while_waiting = {};
    check_with("clamscan");
    EXPECT_EQ(answer(), ScanAnswer::nothing_found);
    program_.platform.expect_input("Enter a new name", "b.exe");
    w_.List3.selected = 0;
    controls::run(w_.Command5.click);
    EXPECT_EQ(answer(), ScanAnswer::nothing_found) << "a new name changes no byte";
    directory_.write("b.exe", "MZ and other bytes");
    EXPECT_EQ(answer(), std::nullopt);
    directory_.write("a.exe", "");
    std::filesystem::resize_file(directory_.path("a.exe"), 2'000'000'001);
    add_results(w_, directory_.path(), {{"a.exe"}});
    check_with("clamscan");
    EXPECT_EQ(result_row(w_, 1).scan, ScanAnswer::not_checked) << "too large for it";
}

TEST_F(VirusGuard, AHarmfulFileIsOpenedOnlyAfterAQuestion) {
    program_.platform.program_results = {{ProgramEnd::exited, 1}};
    check_with("clamscan");
    program_.platform.expect_question("found something harmful in a.exe", false);
    controls::run(w_.List3.double_click);
    EXPECT_THAT(program_.platform.opened, IsEmpty());
    EXPECT_TRUE(program_.platform.questions.back().no_is_default);
}

TEST_F(VirusGuard, AnotherProgramCanBeChosenAndIsRememberedForTheRun) {
    program_.platform.installed["clamscan"] = "/usr/bin/clamscan";
    program_.platform.expect_choice("with clamscan", "&Another program");
    controls::run(w_.Command8.click);
    EXPECT_EQ(chosen_for_, directory_.path("a.exe"));
    scan_with(program_.context, "/opt/guard", chosen_for_, "/opt");
    EXPECT_THAT(program_.platform.started,
                ElementsAre(tests::ScriptedPlatform::Start{"/opt/guard", {directory_.path("a.exe")}, "/opt"}));
    EXPECT_EQ(answer(), std::nullopt) << "nobody read its answer";
    program_.platform.expect_choice("with guard", "Cancel");
    controls::run(w_.Command8.click);
    EXPECT_THAT(program_.platform.waited_for, IsEmpty());
}

TEST_F(VirusGuard, TheFileItselfIsNeverStarted) {
    program_.platform.expect_message("is the file to be checked");
    scan_with(program_.context, directory_.path("a.exe"), directory_.path("a.exe"), directory_.path());
    EXPECT_THAT(program_.platform.started, IsEmpty());
    EXPECT_EQ(program_.session.Scanner, "");
}

}  // namespace
}  // namespace quill::decoder
