#include "cli/report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

namespace quill::cli {
namespace {

using codec::Format;
using codec::ProblemKind;
using codec::Verdict;

/// A console whose streams are strings.
struct Streams {
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    Console console{in, out, err};
};

std::string no_input(const codec::Problem&) {
    return {};
}

codec::Recovered file(std::string name, Verdict verdict) {
    return {std::move(name), "", Format::uu, {verdict, 7, {}}, {"post.uue"}, false};
}

TEST(Report, OneLineTellsNameSizeVerdictAndFormat) {
    Streams streams;
    Report report(streams.console, ReportStyle::lines);
    report.add(file("harbour view.png", Verdict::verified), no_input);
    report.add(file("two\nlines\t.txt", Verdict::whole), no_input);
    EXPECT_EQ(report.finish(), ExitStatus::good);
    EXPECT_EQ(streams.out.str(), "harbour view.png\t7\tverified\tUUE\ntwo?lines?.txt\t7\twhole\tUUE\n");
    EXPECT_EQ(streams.err.str(), "");
}

TEST(Report, DamageIsExplainedOnStandardErrorWithoutWhatWasRepaired) {
    Streams streams;
    Report report(streams.console, ReportStyle::lines);
    codec::Recovered damaged = file("a.png", Verdict::damaged);
    damaged.outcome.problems = {{ProblemKind::quoted, 10, {}, "A line was odd"},
                                {ProblemKind::bad_crc, 20, 5, "The checksum\x1b[2J differs"}};
    report.add(damaged, no_input);
    EXPECT_EQ(report.finish(), ExitStatus::damaged);
    EXPECT_EQ(streams.err.str(), "quill: a.png: at byte 20: The checksum?[2J differs\n");
}

TEST(Report, WhatWasLeftOutOfAWholeResultIsSaidOnStandardError) {
    Streams streams;
    Report report(streams.console, ReportStyle::lines);
    codec::Recovered whole = file("a.png", Verdict::whole);
    whole.outcome.problems = {{ProblemKind::missing_padding, 10, {}, "The padding is missing", {}, true},
                              {ProblemKind::text_after_data, 20, {}, "Text follows the data"}};
    report.add(whole, no_input);
    EXPECT_EQ(report.finish(), ExitStatus::good);
    EXPECT_EQ(streams.err.str(), "quill: a.png: at byte 20: Text follows the data\n");
}

TEST(Report, JsonIsOneArrayWithEveryMember) {
    Streams streams;
    Report report(streams.console, ReportStyle::json);
    codec::Recovered first = file("a \"b\".png", Verdict::incomplete);
    first.path = "in/a \"b\".png";
    first.outcome.problems = {{ProblemKind::missing_end, 99, {}, "The end is missing"},
                              {ProblemKind::quoted, 3, {}, "A line was odd"}};
    first.sources = {"1.uue", "2.uue"};
    report.add(first, no_input);
    report.add(file("c.txt", Verdict::whole), no_input);
    EXPECT_EQ(report.finish(), ExitStatus::damaged);
    EXPECT_EQ(
        streams.out.str(),
        R"([{"name": "a \"b\".png", "path": "in/a \"b\".png", "size": 7, "format": "UUE", )"
        R"("verdict": "incomplete", "already_there": false, "problems": [{"kind": "missing-end", "input": null, "at": 99, "text": "The end is missing"}, )"
        R"({"kind": "quoted", "input": null, "at": 3, "text": "A line was odd"}], "sources": ["1.uue", "2.uue"], "origin": null},)"
        "\n"
        R"( {"name": "c.txt", "path": null, "size": 7, "format": "UUE", "verdict": "whole", "already_there": false, "problems": [], )"
        R"("sources": ["post.uue"], "origin": null}])"
        "\n");
}

TEST(Report, JsonLinesAreComplete) {
    Streams streams;
    Report report(streams.console, ReportStyle::json_lines);
    report.add(file("a\nb", Verdict::whole), no_input);
    EXPECT_EQ(streams.out.str(), json_of(file("a\nb", Verdict::whole), no_input) + "\n") << "before the run ends";
    report.add(file("c", Verdict::whole), no_input);
    EXPECT_EQ(report.finish(), ExitStatus::good);
    EXPECT_EQ(std::count(streams.out.view().begin(), streams.out.view().end(), '\n'), 2);
}

TEST(Report, TheStatusIsThatOfTheWorstResultAndFailuresWeighMost) {
    const struct {
        std::vector<Verdict> verdicts;
        bool failure;
        ExitStatus status;
    } table[] = {
        {{}, false, ExitStatus::nothing},
        {{Verdict::whole, Verdict::verified}, false, ExitStatus::good},
        {{Verdict::incomplete, Verdict::verified}, false, ExitStatus::damaged},
        {{Verdict::whole, Verdict::damaged}, false, ExitStatus::damaged},
        {{Verdict::damaged}, true, ExitStatus::failed},
        {{}, true, ExitStatus::failed},
    };
    for (const auto& row : table) {
        Streams streams;
        Report report(streams.console, ReportStyle::silent);
        for (const Verdict verdict : row.verdicts) report.add(file("x", verdict), no_input);
        if (row.failure) report.fail("y", {ErrorCode::not_found, 0, "No such file or directory"});
        EXPECT_EQ(report.finish(), row.status);
        EXPECT_EQ(streams.out.str(), "");
        EXPECT_EQ(streams.err.str(), row.failure ? "quill: y: No such file or directory\n" : "");
    }
}

TEST(Report, JsonOfNothingIsAnEmptyArray) {
    Streams streams;
    Report report(streams.console, ReportStyle::json);
    EXPECT_EQ(report.finish(), ExitStatus::nothing);
    EXPECT_EQ(streams.out.str(), "[]\n");
}

}  // namespace
}  // namespace quill::cli
