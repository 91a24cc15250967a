#include "cli/command_fixture.h"
#include "zip/archive_builder.h"

#include <gmock/gmock.h>

namespace quill::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using tests::ArchiveBuilder;

class ZipCommandTest : public CommandTest {
  protected:
    std::string path(const std::string& name) const { return directory.path(name); }
};

TEST_F(ZipCommandTest, AnEmptyPasswordIsRefused) {
    directory.write("secret", "a secret");
    for (const std::string first_line : {"", "\n", "\r\n", "\nsecond line\n"}) {
        directory.write("password", first_line);
        EXPECT_EQ(call({"zip", "add", "--password-file", path("password"), path("a.zip"), path("secret")}),
                  ExitStatus::failed);
        EXPECT_THAT(directory.names(), ElementsAre("password", "secret"));
    }
    directory.write("a.zip", ArchiveBuilder().add("a", "x").finish());
    EXPECT_EQ(call({"zip", "test", "--password-file", path("password"), path("a.zip")}), ExitStatus::failed);
}

TEST_F(ZipCommandTest, AMemberWithTwoNamesIsReportedUnderBoth) {
    directory.write("a.zip", ArchiveBuilder().add("a.txt", "x", {.local_name = "evil.sh"}).finish());
    for (const char* command : {"test", "extract"}) {
        std::vector<std::string> arguments{"zip", command, path("a.zip")};
        if (arguments[1] == "extract") arguments.insert(arguments.end(), {"--into", directory.make_directory("into")});
        EXPECT_EQ(call(arguments), ExitStatus::damaged);
        EXPECT_THAT(err, HasSubstr("evil.sh"));
        EXPECT_THAT(err, HasSubstr("a.txt"));
        EXPECT_THAT(out, HasSubstr("\tverified\t"));
    }
    call({"zip", "test", "--json", path("a.zip")});
    EXPECT_THAT(out, HasSubstr("\"names-differ\""));
}

}  // namespace
}  // namespace quill::cli
