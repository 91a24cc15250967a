#include "codec/recovery/part_label.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace quill::codec {
namespace {

TEST(PartLabel, OfASubjectIsTheClearestPairOfNumbers) {
    const struct {
        const char* subject;
        PartLabel label;
    } table[] = {
        {"x.zip (2/5)", {"x.zip", 2, 5}},
        {"x.zip (2of5)", {"x.zip", 2, 5}},
        {"x.zip (Part 2 of 5)", {"x.zip", 2, 5}},
        {"x.zip #2/5", {"x.zip", 2, 5}},
        {"(2/5) x.zip", {"x.zip", 2, 5}},
        {"x.zip (2/5) posted 2/5/98", {"x.zip", 2, 5}},
        {"x.jpg 480/640 (02/05)", {"x.jpg 480/640", 2, 5}},
        {"x.jpg 10/10 [2/5]", {"x.jpg 10/10", 2, 5}},
        {"[1/1] - \"x.zip\" yEnc (2/5)", {"x.zip", 2, 5}},
        {"[1/3] \"album\" (2/5)", {"[1/3] \"album\"", 2, 5}},
        {"x.zip (2/5) [1/1]", {"x.zip", 2, 5}},
        {"Re: REPOST: x.zip (2/5)", {"x.zip", 2, 5}},
        {"x.zip - part 2", {"x.zip", 2, 0}},
    };
    for (const auto& [subject, label] : table) {
        const auto found = label_of_subject(subject);
        ASSERT_TRUE(found) << subject;
        EXPECT_EQ(found->number, label.number) << subject;
        EXPECT_EQ(found->total, label.total) << subject;
        EXPECT_EQ(found->file, label.file) << subject;
    }
    for (const char* subject : {"Photos of 2/5/98", "2 offers", "1998", "part of 7"}) {
        EXPECT_FALSE(label_of_subject(subject)) << subject;
    }
}

TEST(PartLabel, OfAPathIsItsTotalOrTheNumberAtItsEnd) {
    const struct {
        const char* path;
        std::uint32_t number, total, clear;
    } table[] = {
        {"d/x (2_5).txt", 2, 5, 2},    {"d/x_2of5.txt", 2, 5, 2}, {"d/x [2-5].txt", 2, 5, 2},
        {"d/x.zip.002", 2, 0, 2},      {"d/x-02.uue", 2, 0, 0},   {"d/11494.txt", 11494, 0, 0},
        {"d/2024-03-05.eml", 5, 0, 0}, {"(2_5)/x.txt", 0, 0, 0},  {"d/x_5of2.txt", 2, 0, 0},
    };
    for (const auto& [path, number, total, clear] : table) {
        const PartLabel label = label_of_path(path);
        EXPECT_EQ(label.number, number) << path;
        EXPECT_EQ(label.total, total) << path;
        EXPECT_EQ(part_of_path(path), clear) << path;
    }
    EXPECT_EQ(label_of_path("d/x (2_5).txt").file, label_of_path("d/x (3_5).txt").file);
}

}  // namespace
}  // namespace quill::codec
