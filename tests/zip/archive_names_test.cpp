#include "zip/archive_names.h"

#include "files/path.h"
#include "zip/archive_panel.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using tests::ArchiveBuilder;
using tests::WindowProgram;

constexpr int shift_jis = 4, gbk = 5;
constexpr auto japanese = "\xE8\xA1\xA8.txt";  // "table"
constexpr auto stored = "\x95\x5C.txt";        // the same in Shift-JIS, with a backslash in it
constexpr auto of_day = "\xE6\x97\xA5/one";

std::string in_shift_jis() {
    return ArchiveBuilder()
        .add(stored, "1")
        .add("\x93\xFA/one", "2")
        .add("\x93\xFA/two", "3")
        .add("plain", "4")
        .finish();
}

/// The archive above, shown in a wrong character set.
struct WronglyNamed : WindowProgram {
    WronglyNamed() : WindowProgram(in_shift_jis()) {
        open();
        window()->names_in(gbk).click();
        EXPECT_NE(names().front(), japanese);
    }
};

TEST(ArchiveNames, AnotherCharacterSetShowsAtOnceInListAndFiles) {
    WronglyNamed p;
    arcview& w = *p.window();
    const std::string plain_file = p.file(3), old_file = p.file(0), old_directory = files::dir_of(p.file(1));
    w.List1.selected = 1;
    w.List1.selected_rows = {1, 3};
    w.names_in(shift_jis).click();
    EXPECT_THAT(p.names(), ElementsAre(japanese, of_day, "\xE6\x97\xA5/two", "plain"));
    EXPECT_EQ(w.List7.items(), w.List1.items());
    EXPECT_TRUE(w.names_in(shift_jis).checked);
    EXPECT_FALSE(w.names_in(gbk).checked);
    EXPECT_THAT(w.List1.chosen_rows(), ElementsAre(1U, 3U));
    EXPECT_EQ(p.file(0), p.session.WorkDir + "/" + japanese);
    EXPECT_EQ(p.bytes_of(0), "1");
    EXPECT_EQ(p.bytes_of(1), "2");
    EXPECT_EQ(p.file(3), plain_file);
    EXPECT_FALSE(std::filesystem::exists(old_file));
    EXPECT_FALSE(std::filesystem::exists(old_directory));
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::verified);
    EXPECT_EQ(p.dir.read("a.zip"), in_shift_jis());

    const std::string work_dir = p.session.WorkDir;
    w.rpnex.click();  // removes everything that it made
    EXPECT_FALSE(std::filesystem::exists(work_dir));
}

TEST(ArchiveNames, TheChoiceCountsForOpeningExtractingAndChanging) {
    WronglyNamed p;
    arcview& w = *p.window();
    w.names_in(shift_jis).click();
    w.List1.selected = 0;
    w.List1.selected_rows.clear();
    w.peo.click();
    EXPECT_THAT(p.platform.edited, ElementsAre(p.session.WorkDir + "/" + japanese));

    w.extract.click();
    w.own_folder.checked = false;
    show_panel_directory(w, p.dir.make_directory("target"));
    w.Command2.click();
    EXPECT_EQ(p.dir.read(std::string("target/") + of_day), "2");

    p.change(0, "changed");
    w.savzipch.click();
    EXPECT_EQ(p.names().front(), japanese);
    EXPECT_EQ(p.stored(0), "changed");
    EXPECT_EQ(Archive::open(p.dir.path("a.zip"))->members().front().name, japanese);  // for everybody from now on
    EXPECT_EQ(p.names()[1], of_day);
}

TEST(ArchiveNames, FilesInUseKeepTheirNamesAndStayTheMembers) {
    WronglyNamed p;
    arcview& w = *p.window();
    w.List1.selected = 0;
    w.List1.selected_rows.clear();
    w.peo.click();
    p.change(1, "changed");
    const std::string opened = p.file(0), changed = p.file(1);
    w.names_in(shift_jis).click();
    EXPECT_EQ(p.file(0), opened);
    EXPECT_EQ(p.file(1), changed);
    EXPECT_EQ(row_details(w, 1).condition, RowCondition::changed);
    EXPECT_TRUE(std::filesystem::exists(changed));
    EXPECT_EQ(p.file(2), p.session.WorkDir + "/\xE6\x97\xA5/two");
}

TEST(ArchiveNames, UndoFindsTheRenamedFiles) {
    WronglyNamed p;
    arcview& w = *p.window();
    w.List1.selected = 3;
    w.List1.selected_rows.clear();
    p.platform.expect_question("remove plain", true);
    w.remzip.click();
    w.names_in(shift_jis).click();
    w.undo.click();
    EXPECT_EQ(p.names().front(), japanese);
    EXPECT_EQ(p.file(0), p.session.WorkDir + "/" + japanese);
    EXPECT_EQ(p.bytes_of(0), "1");
    EXPECT_EQ(p.bytes_of(3), "4");
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::verified);
}

TEST(ArchiveNames, TheMenuIsThereOnlyWhereItCanChangeSomething) {
    for (const bool has_old : {false, true}) {
        WindowProgram p(has_old ? in_shift_jis() : ArchiveBuilder().add("plain", "1").finish());
        EXPECT_EQ(p.open().nam.enabled, has_old);
    }
}

}  // namespace
}  // namespace quill::zip
