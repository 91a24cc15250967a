#include "support/posts.h"
#include "support/recovered_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

using tests::base64_rows;
using tests::bytes_of;
using tests::Inputs;
using tests::recovered_files;
using tests::RecoveredFile;
using tests::Rows;

std::string text_bytes(std::size_t size) {
    std::string out;
    while (out.size() < size) out += "quill" + std::to_string(out.size()) + " ";
    return out.substr(0, size);
}

std::string post(const std::string& subject, const std::string& name, const std::string& body) {
    return "Subject: " + subject + "\nMIME-Version: 1.0\nContent-Type: application/octet-stream; name=\"" + name +
           "\"\nContent-Transfer-Encoding: base64\n\n" + body;
}

const std::string original = text_bytes(400);  // seven full rows, and one of a byte

/// Post `number` of three: two pieces of three rows, and the rest.
std::string piece(unsigned number) {
    const Rows rows = base64_rows(original);
    const std::size_t begin = (number - 1) * 3;
    const std::size_t end = std::min<std::size_t>(rows.size(), number * 3);
    return post(
        "a.zip (" + std::to_string(number) + "/3)", "a.zip",
        bytes_of({rows.begin() + static_cast<std::ptrdiff_t>(begin), rows.begin() + static_cast<std::ptrdiff_t>(end)}));
}

std::vector<RecoveredFile> found_in(const std::vector<std::string>& posts) {
    Inputs inputs;
    for (const std::string& text : posts) inputs.emplace_back(std::to_string(inputs.size()) + ".txt", text);
    return recovered_files(inputs);
}

TEST(MimePieces, AreJoinedByTheNumbersOfTheirSubjects) {
    for (const auto& order : {std::vector{1U, 2U, 3U}, std::vector{3U, 1U, 2U}}) {
        std::vector<std::string> posts;
        for (const unsigned number : order) posts.push_back(piece(number));
        const std::vector<RecoveredFile> found = found_in(posts);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0].bytes, original);
        EXPECT_EQ(found[0].outcome.verdict, Verdict::whole);
    }
}

TEST(MimePieces, AreNeverWholeWithoutTheOthers) {
    for (const auto& numbers : {std::vector{1U}, {2U}, {3U}, {1U, 2U}, {1U, 3U}, {2U, 3U}}) {
        std::vector<std::string> posts;
        for (const unsigned number : numbers) posts.push_back(piece(number));
        for (const RecoveredFile& file : found_in(posts)) {
            EXPECT_EQ(file.outcome.verdict, Verdict::incomplete) << testing::PrintToString(numbers);
        }
    }
}

TEST(MimePieces, AreInDoubtWhereTheirNumbersAreAlike) {
    std::vector<std::string> posts;
    for (unsigned number = 1; number <= 3; ++number) {
        std::string text = piece(number);
        text.replace(text.find('(') + 1, 1, "2");
        posts.push_back(text);
    }
    for (const RecoveredFile& file : found_in(posts)) EXPECT_GT(file.outcome.verdict, Verdict::whole);
}

TEST(MimePieces, AreNotMadeOfWholeFilesInNumberedPosts) {
    const std::string png = "\x89PNG\r\n\x1A\n" + text_bytes(114 - 8);  // two full rows
    const std::vector<std::string> posts = {
        post("my files (1/3)", "a.dat", bytes_of(base64_rows(text_bytes(100)))),
        post("my files (2/3)", "b.dat", bytes_of(base64_rows(text_bytes(101)))),
        post("my files (3/3)", "c.png", bytes_of(base64_rows(png))),
    };
    const std::vector<RecoveredFile> found = found_in(posts);
    ASSERT_EQ(found.size(), 3U);
    for (const RecoveredFile& file : found) EXPECT_EQ(file.outcome.verdict, Verdict::whole) << file.name;
}

}  // namespace
}  // namespace quill::codec
