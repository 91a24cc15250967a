#include "decoder/connect.h"
#include "decoder/naming_window.h"
#include "decoder/repair_guide.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>

/// Files that cannot be decoded directly, followed up to the decoded file.
namespace quill::decoder {
namespace {

using testing::ElementsAre;

/// "Nothing vouches for these bytes, but their order." ten times over, as rows of 60 characters of Base64.
constexpr int copies = 10;
const std::string sentence = "Nothing vouches for these bytes, but their order";
const std::string encoded_sentence = "Tm90aGluZyB2b3VjaGVzIGZvciB0aGVzZSBieXRlcywgYnV0IHRoZWlyIG9yZGVy";

std::string decoded() {
    std::string text;
    for (int i = 0; i < copies; ++i) text += sentence;
    return text;
}

std::string rows(const std::string& line_end) {
    constexpr std::size_t length = 60;
    std::string base64;
    for (int i = 0; i < copies; ++i) base64 += encoded_sentence;
    std::string text;
    for (std::size_t at = 0; at < base64.size(); at += length) text += base64.substr(at, length) + line_end;
    return text;
}

class RepairedFile : public testing::Test {
  protected:
    /// Runs the decoder in a separate process; returns the files that it lists.
    std::vector<std::string> decode(const std::string& name) {
        connect_decoder(program_.context);
        std::string path = directory_.path(name);
        program_.routes.decode(path);
        return program_.main_window.List3.items();
    }

    tests::TemporaryDirectory directory_;
    tests::Program program_;
};

TEST_F(RepairedFile, ANamedFileOfRowsIsDecodedBesideItself) {
    directory_.write("order.txt", rows("\n"));
    program_.platform.expect_question("called 1order.txt", true);
    EXPECT_THAT(decode("order.txt"), ElementsAre("order (2).txt"));
    EXPECT_EQ(directory_.read("order (2).txt"), decoded());
    EXPECT_THAT(directory_.names(), ElementsAre("1order.txt", "order (2).txt", "order.txt"));
}

TEST_F(RepairedFile, AnUnnamedOneIsDecodedInASecondRunUnderTheNameGiven) {
    directory_.write("mystery.mim", rows("\r\n"));
    {
        tests::Program first;
        connect_decoder(first.context);
        std::string path = directory_.path("mystery.mim");
        first.routes.decode(path);
        Form4* naming = first.windows.loaded<Form4>();
        ASSERT_NE(naming, nullptr);
        naming->Text1.text = "txt";
        first.platform.expect_input("What would you like to call this file?", "order");
        first.platform.expect_question("called 1mystery.mim", true);
        first.platform.expect_message("choose the 1mystery.mim file");
        EXPECT_TRUE(tests::ends_process([&] { controls::run(naming->Command3.click); }));
    }
    EXPECT_THAT(decode("1mystery.mim"), ElementsAre("order.txt"));
    EXPECT_EQ(directory_.read("order.txt"), decoded());
}

TEST_F(RepairedFile, RowsBelowAGreetingAreDecodedFromTheRepairedCopy) {
    directory_.write("post", "Here it is.\r\n\r\n" + rows("\r\n"));
    {
        tests::Program first;
        first.session.EncodedPath = directory_.path("post");
        show_repair_guide(first.context);
        first.platform.expect_message("without the header info");
        first.platform.expect_question("into a regular type of encoded file?", true);
        first.platform.expect_message("will now attempt");
        first.platform.expect_message("NEW.MIM");
        first.platform.expect_message("TEMP.DOC");
        EXPECT_TRUE(tests::ends_process([&] { controls::run(first.windows.load<Form3>().Option7.click); }));
    }
    EXPECT_THAT(decode("new.mim"), ElementsAre("TEMP"));
    EXPECT_EQ(directory_.read("TEMP"), decoded());
}

}  // namespace
}  // namespace quill::decoder
