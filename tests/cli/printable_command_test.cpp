#include "cli/command_fixture.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::cli {
namespace {

using testing::HasSubstr;

/// A CSI of eight bits, a mark that reverses the direction of text, and an isolate.
const std::string hostile =
    "a\xC2\x9B"
    "b\xE2\x80\xAE"
    "c\xE2\x81\xA6"
    "d\xC2\x85";
const std::string shown = "a?b?c?d?";

class Hostile : public CommandTest {
  protected:
    void expect_clean() const {
        for (const std::string& stream : {out, err}) {
            for (const char* control : {"\xC2\x9B", "\xE2\x80\xAE", "\xE2\x81\xA6", "\xC2\x85", "\x1B"}) {
                EXPECT_EQ(stream.find(control), std::string::npos) << stream;
            }
        }
    }
};

TEST_F(Hostile, NoCommandPrintsNamesThatSteerATerminal) {
    directory.write(hostile, "Cat");
    directory.write("esc\x1B", "Cat");
    const std::vector<std::vector<std::string>> calls = {
        {"encode", "--format", "uue", hostile},
        {"encode", "--format", "uue", "gone" + hostile},
        {"merge", hostile, "gone" + hostile, "--output", hostile + ".txt"},
        {"decode", "gone" + hostile},
        {"list", "gone" + hostile},
        {"zip", "add", hostile + ".zip", hostile, "gone" + hostile},
        {"zip", "list", hostile + ".zip"},
        {"zip", "list", "--json", hostile + ".zip"},
        {"zip", "test", hostile + ".zip"},
        {"zip", "test", "--json", hostile + ".zip"},
        {"zip", "extract", hostile + ".zip", "--into", directory.make_directory("into")},
        {"zip", "remove", hostile + ".zip", "gone" + hostile},
        {hostile},
        {"list", "--" + hostile},
    };
    for (const auto& arguments : calls) {
        call(arguments);
        EXPECT_FALSE((out + err).empty() && arguments[1] != "add") << testing::PrintToString(arguments);
        expect_clean();
    }
    EXPECT_EQ(call({"zip", "list", hostile + ".zip"}), ExitStatus::good);
    EXPECT_THAT(out, HasSubstr(shown + "\t3\t"));
}

}  // namespace
}  // namespace quill::cli
