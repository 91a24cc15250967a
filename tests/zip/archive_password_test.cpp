#include "zip/archive_password.h"

#include "zip/archive_actions.h"
#include "zip/archive_panel.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using archive::Encryption;
using ::testing::ElementsAre;
using tests::ArchiveBuilder;
using tests::WindowProgram;

/// Adds a file that is encrypted with `password` to the archive on the disk.
void add_locked(WindowProgram& p, const std::string& name, const std::string& password, Encryption encryption) {
    p.session.ZipPassword = password;
    p.archives.library().new_encryption = encryption;
    p.main_window.List4.assign({p.dir.write(name, "content of " + name)});
    ASSERT_EQ(p.archives.AddWizardItem(false), library_success);
    p.session.ZipPassword.clear();
}

TEST(ArchivePasswords, AreAskedForAgainUntilTheyFit) {
    for (const bool gives_up : {false, true}) {
        WindowProgram p(ArchiveBuilder().finish());
        add_locked(p, "locked", "secret", Encryption::aes256);
        p.platform.expect_input("password encoded", "wrong");
        p.platform.expect_input("does not seem to be the right one", "wrong again");
        p.platform.expect_input("does not seem to be the right one", gives_up ? "" : "secret");
        if (gives_up) p.platform.expect_message("The list shows which, and why");
        arcview& w = p.open();
        EXPECT_TRUE(p.platform.prompts.back().secret);
        EXPECT_EQ(w.List1.count(), 1U);
        EXPECT_EQ(row_details(w, 0).condition == RowCondition::verified, !gives_up);
        EXPECT_EQ(p.session.ZipPassword, gives_up ? "" : "secret");
    }
}

TEST(ArchivePasswords, AWrongOneIsNotUsedForWhatIsAdded) {
    const struct {
        const char* what;
        std::vector<const char*> typed;
        std::optional<bool> openly;  ///< the answer to the next question
        std::size_t members;
        bool locked;  ///< the added file
    } cases[] = {{"the right one", {"secret"}, {}, 2, true},
                 {"at last the right one", {"wrong", "secret"}, {}, 2, true},
                 {"none, without protection", {"wrong", ""}, true, 2, false},
                 {"none, and so nothing", {""}, false, 1, true}};
    for (const Encryption encryption : {Encryption::traditional, Encryption::aes256}) {
        for (const auto& c : cases) {
            SCOPED_TRACE(c.what);
            WindowProgram p(ArchiveBuilder().finish());
            add_locked(p, "locked", "secret", encryption);
            p.platform.expect_input("password encoded", "wrong");
            p.platform.expect_input("does not seem to be the right one", "");
            p.platform.expect_message("could not be unpacked");
            arcview& w = p.open();
            const char* part = "to encrypt the files that you add";
            for (const char* typed : c.typed) {
                p.platform.expect_input(part, typed);
                part = "opens no file";
            }
            if (c.openly) p.platform.expect_question("not encrypted", *c.openly);
            add_files(w, {p.dir.write("from/new", "n")});
            const Result<Archive> archive = Archive::open(p.dir.path("a.zip"));
            ASSERT_EQ(archive->members().size(), c.members);
            EXPECT_EQ(archive->members().back().is_encrypted(), c.locked);
            EXPECT_EQ(p.session.ZipPassword, c.openly ? "" : "secret");
            if (c.members == 1) continue;
            EXPECT_EQ(p.stored(1), "n");
        }
    }
}

TEST(ArchivePasswords, ATestKeepsOnlyTheOneThatFits) {
    WindowProgram p(ArchiveBuilder().finish());
    add_locked(p, "one", "first", Encryption::aes256);
    add_locked(p, "two", "second", Encryption::aes256);
    p.platform.expect_input("password encoded", "first");
    p.platform.expect_input("does not seem to be the right one", "");
    p.platform.expect_message("1 member could not be unpacked");
    arcview& w = p.open();
    EXPECT_EQ(p.session.ZipPassword, "first");
    p.platform.expect_input("does not seem to be the right one", "wrong");
    p.platform.expect_input("does not seem to be the right one", "");
    p.platform.expect_message("1 in need of another password");
    w.test.click();
    EXPECT_EQ(p.session.ZipPassword, "first");
    p.platform.expect_input("does not seem to be the right one", "second");
    p.platform.expect_message("all are as they were packed");
    w.test.click();
    EXPECT_EQ(p.session.ZipPassword, "second");
}

/// A wrong password that the first check of the traditional encryption lets pass.
std::string password_like_the_right_one(const Archive& archive) {
    for (int i = 0;; ++i) {
        ExtractOptions options;
        options.password = "wrong " + std::to_string(i);
        bool passes = false;
        EXPECT_TRUE(test_members(archive, {0}, options, [&](const MemberResult& r) { passes = !r.needs_password; }));
        if (passes) return options.password;
    }
}

TEST(ArchivePasswords, AWrongOneThatPassesTheFirstCheckExtractsNothing) {
    WindowProgram p(ArchiveBuilder().finish());
    add_locked(p, "locked", "secret", Encryption::traditional);
    const std::string wrong = password_like_the_right_one(*Archive::open(p.dir.path("a.zip")));
    p.platform.expect_input("password encoded", "secret");
    arcview& w = p.open();
    for (const bool gives_up : {false, true}) {
        SCOPED_TRACE(gives_up);
        p.session.ZipPassword = wrong;
        w.extract.click();
        show_panel_directory(w, p.dir.make_directory(gives_up ? "kept out" : "target"));
        w.own_folder.checked = w.opens_folder.checked = false;
        p.platform.expect_input("does not seem to be the right one", gives_up ? "" : "secret");
        p.platform.expect_message(gives_up ? "1 in need of another password" : "1 file extracted");
        w.Command2.click();
    }
    EXPECT_EQ(p.dir.read("target/locked"), "content of locked");
    EXPECT_FALSE(p.dir.has("kept out/locked"));
}

}  // namespace
}  // namespace quill::zip
