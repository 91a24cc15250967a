#include "files/mounts.h"

#include <gmock/gmock.h>

namespace quill::files {
namespace {

using ::testing::ElementsAre;

TEST(Drives, AreTheRootAndWhatPeopleMount) {
    const std::string mounts =
        "/dev/sda2 / ext4 rw 0 0\nproc /proc proc rw 0 0\n/dev/sdc1 /run/media/ann/USB\\040STICK vfat rw 0 0\n"
        "/dev/sdb1 /home ext4 rw 0 0\ntmpfs /run/user/1000 tmpfs rw 0 0\n/dev/sdb1 /home ext4 rw 0 0\n"
        "/dev/sdd1 /mediatheque ext4 rw 0 0\nbroken\n";
    EXPECT_THAT(drives_among(mounts), ElementsAre("/", "/home", "/run/media/ann/USB STICK"));
    EXPECT_THAT(drives_among(""), ElementsAre("/"));
}

TEST(Drives, APathLiesOnTheDeepestOne) {
    const std::vector<std::string> drives = {"/", "/home", "/home/ann/disk"};
    EXPECT_EQ(drive_of("/home/ann/mail", drives), "/home");
    EXPECT_EQ(drive_of("/home/ann/disk", drives), "/home/ann/disk");
    EXPECT_EQ(drive_of("/homework", drives), "/");
    EXPECT_EQ(drive_of("/", drives), "/");
}

}  // namespace
}  // namespace quill::files
