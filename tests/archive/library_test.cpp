#include "archive/library/library.h"

#include "archive/archive_builder.h"
#include "support/temporary_directory.h"

#include <gmock/gmock.h>
#include <limits>

namespace quill::zip {
namespace {

using tests::ArchiveBuilder;
using tests::TemporaryDirectory;

/// The records of one user of the library.
struct Caller {
    ZipLibrary library;
    ZipCommand zip;
    UnzipCommand unzip;
    ZipStrings zip_strings;
    UnzipStrings unzip_strings;
    ZipItemInfo info;
    ZipStatusBlock status;

    explicit Caller(const std::string& path, MakeOutput make_output = output_beside) : library(std::move(make_output)) {
        zip_strings.zipFile = unzip_strings.zipFile = path;
    }
    std::int16_t unzip_function(std::int32_t function) {
        unzip.function = function;
        return library.dunzipVB(unzip, unzip_strings, info, status);
    }
    std::int16_t add(const std::string& file) {
        zip.function = zip_add;
        zip_strings.itemList = {{file}};
        return library.dzipVB(zip, zip_strings, status);
    }
};

TEST(ZipLibrary, CountsAndTellsMembersInTheirOrder) {
    const TemporaryDirectory dir;
    Caller caller(dir.write("a.zip", ArchiveBuilder()
                                         .add("One.TXT", "12345", {.attributes = 1})
                                         .add("d/", "", {.attributes = 16})
                                         .add("locked", "x", {.flags = encrypted_flag})
                                         .finish()));
    ASSERT_EQ(caller.unzip_function(unzip_count), library_success);
    EXPECT_EQ(caller.unzip.itemCount, 3);
    ASSERT_EQ(caller.unzip_function(unzip_next), library_success);
    EXPECT_EQ(caller.info.fileName, "One.TXT");
    EXPECT_EQ(caller.info.dateTime, "03/11/25 17:33");
    EXPECT_EQ(caller.info.uncompressedSize, 5);
    EXPECT_EQ(caller.info.attributes, attribute_read_only);
    ASSERT_EQ(caller.unzip_function(unzip_next), library_success);
    EXPECT_EQ(caller.info.attributes, attribute_directory);
    caller.unzip.itemIndex = 2;
    ASSERT_EQ(caller.unzip_function(unzip_member), library_success);
    EXPECT_EQ(caller.info.fileName, "locked");
    EXPECT_EQ(caller.info.attributes, attribute_encrypted);
    EXPECT_EQ(caller.unzip_function(unzip_next), library_success);
    EXPECT_EQ(caller.unzip_function(unzip_next), library_no_more_members);
    caller.unzip.itemIndex = 3;
    EXPECT_EQ(caller.unzip_function(unzip_member), library_no_more_members);
}

TEST(ZipLibrary, ASizeBeyondAllFilesIsTheGreatestThereIs) {
    const TemporaryDirectory dir;
    std::string extra;
    put16(extra, extra_zip64);
    put16(extra, 8);
    put64(extra, 0xFFFFFFFFFFFFFFFF);
    Caller caller(
        dir.write("a.zip", ArchiveBuilder().add("a", "x", {.stated_size = 0xFFFFFFFF, .extra = extra}).finish()));
    ASSERT_EQ(caller.unzip_function(unzip_count), library_success);
    ASSERT_EQ(caller.unzip_function(unzip_next), library_success);
    EXPECT_EQ(caller.info.uncompressedSize, std::numeric_limits<std::int64_t>::max());
}

TEST(ZipLibrary, AnExtractionThatFailsHasNoResults) {
    const TemporaryDirectory dir;
    Caller caller(dir.write("a.zip", ArchiveBuilder().add("a", "1").finish()));
    caller.unzip_strings.destinationDir = dir.make_directory("into");
    caller.unzip_strings.itemList = {{"a"}};
    ASSERT_EQ(caller.unzip_function(unzip_extract), library_success);
    EXPECT_EQ(caller.library.last_extraction().size(), 1U);
    caller.unzip_strings.zipFile = dir.path("none.zip");
    EXPECT_EQ(caller.unzip_function(unzip_extract), library_not_found);
    EXPECT_TRUE(caller.library.last_extraction().empty());
}

TEST(ZipLibrary, ReadsAnUnchangedArchiveOnce) {
    const TemporaryDirectory dir;
    Caller caller(dir.write("a.zip", ArchiveBuilder().add("a", "1").finish()));
    const auto opened = caller.library.open(dir.path("a.zip"));
    for (int i = 0; i < 3; ++i) ASSERT_EQ(caller.unzip_function(unzip_count), library_success);
    EXPECT_EQ(caller.library.open(dir.path("a.zip")), opened);
    dir.write("a.zip", ArchiveBuilder().add("a", "1").add("b", "2").finish());
    ASSERT_EQ(caller.unzip_function(unzip_count), library_success);
    EXPECT_EQ(caller.unzip.itemCount, 2);
    EXPECT_NE(caller.library.open(dir.path("a.zip")), opened);
}

TEST(ZipLibrary, AdditionsInARowAreOneRewrite) {
    const TemporaryDirectory dir;
    int rewrites = 0;
    Caller caller(dir.path("a.zip"), [&](const std::string& path) {
        ++rewrites;
        return output_beside(path);
    });
    caller.library.begin_adding();
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(caller.add(dir.write("f" + std::to_string(i), std::to_string(i))), library_success);
    EXPECT_EQ(caller.add(dir.path("missing")), library_not_found);  // reported at once; the others stay
    caller.zip_strings.itemList = {{dir.write("with a missing one", "x")}, {dir.path("missing")}};
    EXPECT_EQ(caller.library.dzipVB(caller.zip, caller.zip_strings, caller.status),
              library_not_found);  // a call adds all of its items or none
    EXPECT_FALSE(dir.has("a.zip"));
    EXPECT_EQ(caller.library.end_adding(), library_success);
    EXPECT_EQ(rewrites, 1);
    ASSERT_EQ(caller.unzip_function(unzip_count), library_success);
    EXPECT_EQ(caller.unzip.itemCount, 50);
    EXPECT_EQ(caller.add(dir.path("f7")), library_success);  // replaces, at once
    EXPECT_EQ(rewrites, 2);
}

TEST(ZipLibrary, WhereAllAdditionsFailNothingIsWritten) {
    const TemporaryDirectory dir;
    for (const bool there : {false, true}) {
        if (there) dir.write("a.zip", ArchiveBuilder().add("a", "1").finish());
        const std::vector<std::string> names = dir.names();
        Caller caller(dir.path("a.zip"));
        caller.library.begin_adding();
        EXPECT_EQ(caller.add(dir.path("missing")), library_not_found);
        EXPECT_EQ(caller.library.end_adding(), library_not_found);
        EXPECT_EQ(dir.names(), names);
        EXPECT_EQ(caller.library.end_adding(), library_success) << "nothing waits";
    }
    Caller caller(dir.path("b.zip"));
    caller.library.begin_adding();
    EXPECT_EQ(caller.add(dir.path("missing")), library_not_found);
    caller.zip_strings.zipFile = dir.path("c.zip");
    EXPECT_EQ(caller.add(dir.write("f", "x")), library_success);  // the failure concerned another archive
    EXPECT_EQ(caller.library.end_adding(), library_success);
    EXPECT_FALSE(dir.has("b.zip"));
    EXPECT_TRUE(dir.has("c.zip"));
}

TEST(ZipLibrary, AStoppedCallSaysSo) {
    const TemporaryDirectory dir;
    Caller caller(dir.write("a.zip", ArchiveBuilder().add("a", "1").finish()));
    const std::string old = dir.read("a.zip");
    caller.library.progress = [](const Progress&) { return false; };
    EXPECT_EQ(caller.add(dir.write("f", "x")), library_cancelled);
    EXPECT_EQ(library_error_text(library_cancelled), "ZIP error: the operation was stopped");
    EXPECT_EQ(dir.read("a.zip"), old);
}

TEST(ZipLibrary, OfTwoMembersOfANameTheNumberedOneGoes) {
    const TemporaryDirectory dir;
    Caller caller(dir.write("a.zip", ArchiveBuilder().add("same", "first").add("same", "second").finish()));
    caller.zip.function = zip_delete;
    caller.zip_strings.itemList = {{"same", 0}};
    ASSERT_EQ(caller.library.dzipVB(caller.zip, caller.zip_strings, caller.status), library_success);
    caller.unzip_strings.destinationDir = dir.make_directory("into");
    caller.unzip_strings.itemList = {{"same"}};
    ASSERT_EQ(caller.unzip_function(unzip_extract), library_success);
    EXPECT_EQ(dir.read("into/same"), "second");
}

TEST(ZipLibrary, NamesWithAndWithoutDirectories) {
    const TemporaryDirectory dir;
    const std::string file = dir.write("sub/file.txt", "x");
    Caller caller(dir.path("a.zip"));
    ASSERT_EQ(caller.add(file), library_success);
    caller.zip.noDirectoryNames = flag_on;
    ASSERT_EQ(caller.add(file), library_success);
    const auto opened = caller.library.open(dir.path("a.zip"));
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->archive.members()[0].name, file.substr(1));
    EXPECT_EQ(opened->archive.members()[1].name, "file.txt");
}

TEST(ZipLibrary, TellsFailuresApart) {
    const TemporaryDirectory dir;
    EXPECT_EQ(Caller(dir.path("none.zip")).unzip_function(unzip_count), library_not_found);
    EXPECT_EQ(Caller(dir.write("text.zip", "this is but a text, however it is called")).unzip_function(unzip_count),
              library_no_archive);
    Caller caller(dir.write(
        "a.zip", ArchiveBuilder().add("bad", "x", {.crc = 1}).add("locked", "x", {.flags = encrypted_flag}).finish()));
    caller.unzip_strings.destinationDir = dir.make_directory("into");
    caller.unzip_strings.itemList = {{"bad"}};
    EXPECT_EQ(caller.unzip_function(unzip_extract), library_damaged);
    caller.unzip_strings.itemList = {{"locked"}};
    EXPECT_EQ(caller.unzip_function(unzip_extract), library_password);
    EXPECT_EQ(caller.unzip_function(unzip_none), library_bad_call);
    EXPECT_EQ(library_error_text(library_no_archive), "ZIP error: the file is no ZIP file");
    for (const int none : {-1, 51, 52, 32767})
        EXPECT_EQ(library_error_text(static_cast<std::int16_t>(none)), "ZIP error: ");
}

}  // namespace
}  // namespace quill::zip
