#include "files/directory.h"

#include "files/mounts.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <unistd.h>
#include <vector>

namespace quill::files {
namespace {

using Names = std::vector<std::string>;
using tests::TemporaryDirectory;

TEST(Directory, ListsFilesIgnoringCaseInOrder) {
    const TemporaryDirectory dir;
    for (const char* name : {"b.txt", "A.txt", "a.txt", ".hidden", "Z.jpg", "sub/inside"}) dir.write(name, "");
    ASSERT_EQ(symlink("sub", dir.path("link").c_str()), 0);
    EXPECT_EQ(*list_files(dir.path()), (Names{".hidden", "A.txt", "a.txt", "b.txt", "Z.jpg"}));
    EXPECT_EQ(*list_files(dir.path(), "*.JPG;b*"), (Names{"b.txt", "Z.jpg"}));
    EXPECT_EQ(*list_directories(dir.path()), (Names{"link", "sub"}));
    EXPECT_EQ(list_files(dir.path("gone")).error().code, ErrorCode::not_found);
}

TEST(Directory, AsksOfFiles) {
    const TemporaryDirectory dir;
    dir.write("a", "four");
    ASSERT_EQ(symlink("a", dir.path("link").c_str()), 0);
    ASSERT_EQ(symlink("gone", dir.path("dangling").c_str()), 0);
    EXPECT_EQ(file_size("a"), 4U);
    EXPECT_EQ(file_size("link"), 4U);
    EXPECT_EQ(file_size("dangling"), std::nullopt);
    EXPECT_EQ(file_size("."), std::nullopt);
    EXPECT_TRUE(exists("dangling"));
    EXPECT_FALSE(exists("gone"));
    EXPECT_TRUE(is_directory("."));
    EXPECT_FALSE(is_directory("a"));
    EXPECT_EQ(absolute("a"), dir.path("a"));
    EXPECT_EQ(absolute("/a"), "/a");
    EXPECT_EQ(*read_file("a"), "four");
}

TEST(Directory, ARenameReplacesOnlyWhereAskedTo) {
    const TemporaryDirectory dir;
    dir.write("a", "a");
    dir.write("b", "b");
    EXPECT_EQ(rename_new("a", "b").error().code, ErrorCode::exists);
    EXPECT_EQ(dir.read("b"), "b");
    EXPECT_TRUE(rename_new("a", "c").ok());
    EXPECT_TRUE(rename_over("c", "b").ok());
    EXPECT_EQ(dir.read("b"), "a");
    EXPECT_EQ(dir.names(), Names{"b"});
    EXPECT_EQ(rename_new("gone", "d").error().code, ErrorCode::not_found);
    EXPECT_TRUE(remove_file("b"));
    EXPECT_FALSE(remove_file("b"));
}

TEST(Mounts, AreWhatAPersonTakesForDrives) {
    constexpr auto mounts =
        "/dev/sda1 / ext4 rw 0 0\n"
        "proc /proc proc rw 0 0\n"
        "/dev/sdb1 /media/ada/MY\\040STICK vfat rw 0 0\n"
        "/dev/sdc1 /home ext4 rw 0 0\n"
        "tmpfs /run tmpfs rw 0 0\n"
        "/dev/sdd1 /mnt/disk ext4 rw 0 0\n";
    const Names drives = drives_among(mounts);
    EXPECT_EQ(drives, (Names{"/", "/home", "/media/ada/MY STICK", "/mnt/disk"}));
    EXPECT_EQ(drive_of("/home/ada/x", drives), "/home");
    EXPECT_EQ(drive_of("/homework/x", drives), "/");
    EXPECT_EQ(drive_of("/media/ada/MY STICK", drives), "/media/ada/MY STICK");
}

}  // namespace
}  // namespace quill::files
