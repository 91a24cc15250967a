#include "codec/recovery/disguise.h"

#include "codec/recovery/content_name.h"

#include <gtest/gtest.h>

#include <string>

namespace quill::codec {
namespace {

using namespace std::string_literals;

TEST(Disguise, ANameThatHidesAProgramIsTold) {
    const struct {
        std::string name;
        std::string written;
        bool disguised;
    } table[] = {
        {"photo.jpg.exe", "photo.jpg.exe", true},
        {"Photo.JPG .SCR", "Photo.JPG .SCR", true},
        {"holiday.jpg" + std::string(150, ' ') + ".exe", "holiday.jpg .exe", true},
        {"holiday" + std::string(400, ' ') + ".exe", "holiday .exe", true},
        {"holiday\u3000\u2003\u00A0.exe", "holiday .exe", true},
        {"photo\u202Egpj.exe", "photogpj.exe", true},
        {"my\u200Bphoto.exe", "myphoto.exe", true},
        {"setup.exe", "setup.exe", false},
        {"setup.exe   ", "setup.exe", false},
        {"setup-1.2.exe", "setup-1.2.exe", false},
        {"my setup.exe", "my setup.exe", false},
        {"notes.txt.gz", "notes.txt.gz", false},
        {"two  blanks.jpg", "two blanks.jpg", false},
        {"\u05D0\u200F.pdf", "\u05D0.pdf", false},
        {"one\u3000wide.txt", "one\u3000wide.txt", false},
        {"exe", "exe", false},
        {"a.jpg.", "a.jpg", false},
        {"", "", false},
    };
    for (const auto& row : table) {
        EXPECT_EQ(plain_name(row.name), row.written);
        EXPECT_EQ(disguise_of(row.name, 0).has_value(), row.disguised) << row.written;
    }
}

TEST(Disguise, IsNoDamage) {
    const auto problem = disguise_of("photo.jpg.exe", 7);
    ASSERT_TRUE(problem);
    EXPECT_EQ(grade_of(*problem), Grade::repaired);
    EXPECT_EQ(problem->kind, ProblemKind::disguised_name);
    EXPECT_EQ(problem->at_input, 7U);
}

}  // namespace
}  // namespace quill::codec
