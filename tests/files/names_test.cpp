#include "files/names.h"

#include "files/path.h"
#include "support/temporary_directory.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace quill::files {
namespace {

using tests::TemporaryDirectory;

TEST(SafeName, LeavesABareName) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"photo.jpg", "photo.jpg"},
        {"my photo (1).tar.gz", "my photo (1).tar.gz"},
        {"../../etc/passwd", "passwd"},
        {"..\\..\\boot.ini", "boot.ini"},
        {"C:evil.txt", "evil.txt"},
        {"/etc/", ""},
        {"..", ""},
        {".bashrc", "bashrc"},
        {"-rf", "rf"},
        {" . name. ", "name"},
        {"a\r\nb\x01.txt", "ab.txt"},
        {"a\x7F.txt", "a.txt"},
        {"ab:c?d*.txt", "ab_c_d_.txt"},
        {"\xE2\x80\xAEgpj.exe", "gpj.exe"},  // right-to-left override
        {"a\xE2\x80\x8B.txt", "a.txt"},      // zero width space
        {"con", "_con"},
        {"COM1.txt", "_COM1.txt"},
        {"Aux .log", "_Aux .log"},
        {"com10.txt", "com10.txt"},
        {"console", "console"},
        {"gr\xFC\xDF.txt", "gr\xC3\xBC\xC3\x9F.txt"},  // Windows-1252
        {"gr\xC3\xBC\xC3\x9F.txt", "gr\xC3\xBC\xC3\x9F.txt"},
        {std::string("a\0b.txt", 7), "ab.txt"},
        {"", ""},
    };
    for (const auto& [hostile, safe] : cases) EXPECT_EQ(safe_name(hostile), safe) << testing::PrintToString(hostile);
}

TEST(SafeName, IsAtMost255BytesWithItsExtensionAndWholeCharacters) {
    const std::string long_name = std::string(300, 'a') + ".jpeg";
    EXPECT_EQ(safe_name(long_name), std::string(250, 'a') + ".jpeg");
    std::string umlauts = "x";
    for (int i = 0; i < 200; ++i) umlauts += "\xC3\xA4";
    const std::string cut = safe_name(umlauts + ".txt");
    EXPECT_LE(cut.size(), 255U);
    EXPECT_TRUE(text::is_utf8(cut));
    EXPECT_TRUE(cut.ends_with(".txt"));
    EXPECT_EQ(safe_name("a." + std::string(400, 'b')).size(), 255U);
}

TEST(SafeName, OfASafeNameIsTheSame) {
    for (const char* name : {"photo.jpg", "..\\con.txt", "- .x",
                             "a\xE2\x80\xAE"
                             "b",
                             ".-..-a. .", "\xFF\xFE.txt"}) {
        const std::string once = safe_name(name);
        EXPECT_EQ(safe_name(once), once) << name;
    }
}

TEST(UniqueName, IsTheFirstFreeOneOfItsRow) {
    const TemporaryDirectory dir;
    EXPECT_EQ(unique_name(dir.path(), "a.txt"), "a.txt");
    dir.write("a.txt", "");
    dir.make_directory("a (2).txt");
    EXPECT_EQ(unique_name(dir.path(), "a.txt"), "a (3).txt");
    EXPECT_EQ(numbered_name("archive.tar.gz", 2), "archive.tar (2).gz");
    EXPECT_EQ(numbered_name(".hidden", 2), ".hidden (2)");
    EXPECT_EQ(numbered_name(std::string(251, 'a') + ".txt", 12).size(), 255U);
}

TEST(FindName, PrefersTheExactName) {
    const TemporaryDirectory dir;
    dir.write("Photo.JPG", "");
    EXPECT_EQ(find_name(dir.path(), "photo.jpg"), "Photo.JPG");
    dir.write("photo.jpg", "");
    EXPECT_EQ(find_name(dir.path(), "photo.jpg"), "photo.jpg");
    EXPECT_EQ(find_name(dir.path(), "gone.jpg"), std::nullopt);
    EXPECT_EQ(find_name(dir.path() + "/none", "photo.jpg"), std::nullopt);
    EXPECT_EQ(find_name(dir.path(), "../" + name_of(dir.path()) + "/photo.jpg"), std::nullopt);
}

TEST(Matches, PatternsIgnoreCase) {
    for (const auto& [name, patterns] : std::vector<std::pair<const char*, const char*>>{{"a.JPG", "*.jpg"},
                                                                                         {"a.gif", "*.jpg;*.gif"},
                                                                                         {"a.gif", "*.jpg ; *.gif"},
                                                                                         {"noext", "*.*"},
                                                                                         {"", "*"},
                                                                                         {"abc", "a?c"},
                                                                                         {"snapshot-f1", "snap*f?"},
                                                                                         {"a.b.zip", "*.zip"},
                                                                                         {"x", "*x*"}}) {
        EXPECT_TRUE(matches(name, patterns)) << name << " " << patterns;
    }
    for (const auto& [name, patterns] : std::vector<std::pair<const char*, const char*>>{
             {"a.jpeg", "*.jpg"}, {"ajpg", "*.jpg"}, {"ac", "a?c"}, {"a", ""}, {"zip.txt", "*.zip;*.htx"}}) {
        EXPECT_FALSE(matches(name, patterns)) << name << " " << patterns;
    }
    EXPECT_FALSE(matches(std::string(255, 'a'), "*a*a*a*a*a*a*a*a*a*a*b"));
}

TEST(Path, IsSplitAtItsLastSlash) {
    struct Split {
        const char* path;
        const char* dir;
        const char* name;
    };
    for (const auto& [path, dir, name] : {Split{"/a/b", "/a", "b"}, Split{"/a", "/", "a"}, Split{"a", "", "a"},
                                          Split{"/a/b/", "/a", "b/"}, Split{"/", "", "/"}, Split{"", "", ""}}) {
        EXPECT_EQ(dir_of(path), dir) << path;
        EXPECT_EQ(name_of(path), name) << path;
    }
    EXPECT_EQ(join("/", "a"), "/a");
    EXPECT_EQ(join("/a", "b"), "/a/b");
    EXPECT_EQ(join("", "b"), "b");
    EXPECT_TRUE(is_root("/"));
    EXPECT_FALSE(is_root("/a"));
    EXPECT_EQ(extension_at("a.b.c"), 3U);
    EXPECT_EQ(extension_at(".a"), 2U);
    EXPECT_EQ(extension_at("a"), 1U);
}

}  // namespace
}  // namespace quill::files
