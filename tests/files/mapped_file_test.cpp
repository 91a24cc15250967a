#include "files/mapped_file.h"

#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quill::files {
namespace {

using tests::TemporaryDirectory;

TEST(MappedFile, GivesTheBytesAndKeepsThemOverARenameAndADelete) {
    const TemporaryDirectory dir;
    const std::string path = dir.write("a", "some bytes");
    Result<MappedFile> file = MappedFile::open(path);
    ASSERT_TRUE(file.ok());
    const MappedFile moved = *std::move(file);
    unlink(path.c_str());
    EXPECT_EQ(moved.bytes(), "some bytes");
    EXPECT_FALSE(moved.cut_short());
}

TEST(MappedFile, AnEmptyFileHasNoBytes) {
    const TemporaryDirectory dir;
    const Result<MappedFile> file = MappedFile::open(dir.write("a", ""));
    ASSERT_TRUE(file.ok());
    EXPECT_TRUE(file->bytes().empty());
    EXPECT_FALSE(file->cut_short());
}

TEST(MappedFile, OnlyRegularFilesAreTaken) {
    const TemporaryDirectory dir;
    EXPECT_EQ(MappedFile::open(dir.path("gone")).error().code, ErrorCode::not_found);
    EXPECT_EQ(MappedFile::open(dir.path()).error().code, ErrorCode::access);
    EXPECT_EQ(MappedFile::open("/dev/zero").error().code, ErrorCode::unsupported);
    ASSERT_EQ(mkfifo(dir.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(MappedFile::open(dir.path("pipe")).error().code, ErrorCode::unsupported) << "and does not wait for it";
}

TEST(MappedFile, BytesCutOffMeanwhileReadAsZerosAndAreTold) {
    const TemporaryDirectory dir;
    const std::size_t size = 64 * 1024;
    const std::string path = dir.write("a", std::string(size, 'x'));
    const Result<MappedFile> file = MappedFile::open(path);
    ASSERT_TRUE(file.ok());
    ASSERT_EQ(truncate(path.c_str(), 10), 0);
    const std::string_view bytes = file->bytes();
    EXPECT_EQ(bytes.substr(0, 10), "xxxxxxxxxx");
    EXPECT_TRUE(std::all_of(bytes.begin() + 10, bytes.end(), [](char c) { return c == 0; }));
    EXPECT_TRUE(file->cut_short());
}

TEST(MappedFile, ReleasedBytesCanBeReadAgain) {
    const TemporaryDirectory dir;
    std::string bytes(3 << 20, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 / 5);
    const Result<MappedFile> file = MappedFile::open(dir.write("a", bytes));
    ASSERT_TRUE(file.ok());
    for (const std::size_t offset :
         {std::size_t{0}, std::size_t{2 << 20}, std::size_t{5}, bytes.size(), bytes.size() + 9}) {
        file->release_before(offset);
        ASSERT_EQ(file->bytes(), bytes) << offset;
    }
}

TEST(MappedFile, EveryOneOfManyMayBeCutOff) {
    const TemporaryDirectory dir;
    const std::size_t size = 8192;
    std::vector<MappedFile> files;
    for (int i = 0; i < 600; ++i) {
        files.push_back(*MappedFile::open(dir.write("a" + std::to_string(i), std::string(size, 'x'))));
    }
    files.erase(files.begin() + 10, files.begin() + 40);  // other mappings reuse their places
    for (int i = 600; i < 700; ++i) {
        files.push_back(*MappedFile::open(dir.write("a" + std::to_string(i), std::string(size, 'x'))));
    }
    for (int i = 0; i < 700; ++i) ASSERT_EQ(truncate(dir.path("a" + std::to_string(i)).c_str(), 0), 0);
    for (const MappedFile& file : files) {
        EXPECT_EQ(file.bytes().back(), '\0');
        EXPECT_TRUE(file.cut_short());
    }
}

TEST(MappedFile, WhatWasWrittenToMeanwhileHasChanged) {
    const TemporaryDirectory dir;
    const std::string path = dir.write("a", "some bytes");
    const auto set_time = [&](std::time_t seconds) {
        const timespec times[2] = {{seconds, 0}, {seconds, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    };
    set_time(1000);
    const MappedFile file = *MappedFile::open(path);
    EXPECT_FALSE(file.changed());
    dir.write("a", "SOME bytes");
    set_time(1001);
    EXPECT_TRUE(file.changed());
    set_time(1000);
    EXPECT_FALSE(file.changed());
    ASSERT_EQ(truncate(path.c_str(), 20), 0);
    set_time(1000);
    EXPECT_TRUE(file.changed()) << "it has grown";
}

}  // namespace
}  // namespace quill::files
