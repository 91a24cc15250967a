#include "zip/archive_encryption.h"

#include "zip/archive_actions.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using archive::Encryption;
using tests::ArchiveBuilder;
using tests::WindowProgram;

/// Returns the encryptions of the members of the archive on the disk.
std::vector<std::optional<Encryption>> encryptions(const WindowProgram& p) {
    std::vector<std::optional<Encryption>> out;
    const Result<Archive> archive = Archive::open(p.dir.path("a.zip"));
    for (const Member& member : archive->members()) out.push_back(member.encryption());
    return out;
}

TEST(ArchiveEncryption, FilesAreLockedAsTheUserChooses) {
    const struct {
        const char* answer;
        std::vector<const char*> typed;
        std::optional<Encryption> encryption;
    } cases[] = {
        {"&AES-256", {"sesame", "sesame"}, Encryption::aes256},
        {"&Traditional", {"sesame", "sesame"}, Encryption::traditional},
        {"&AES-256", {"sesame", "another", "sesame", "sesame"}, Encryption::aes256},
        {"&AES-256", {""}, {}},
        {"&AES-256", {"sesame", ""}, {}},
        {"&No password", {}, {}},
        {"&Cancel", {}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.answer);
        WindowProgram p(ArchiveBuilder().add("plain", "1").finish());
        arcview& w = p.open();
        ASSERT_TRUE(w.lock.enabled);
        p.platform.expect_choice("AES-256", c.answer);
        for (std::size_t i = 0; i < c.typed.size(); ++i) {
            p.platform.expect_input(i % 2 == 0 ? "Type the password" : "once more", c.typed[i]);
            if (i == 1 && c.typed.size() > 2) p.platform.expect_message("differ");
        }
        w.lock.click();
        for (const platform::Prompt& prompt : p.platform.prompts) EXPECT_TRUE(prompt.secret);
        add_files(w, {p.dir.write("from/new", "content")});
        EXPECT_THAT(encryptions(p), ::testing::ElementsAre(std::nullopt, c.encryption));
        EXPECT_EQ(p.stored(1), "content");
        EXPECT_EQ(w.lock.enabled, !c.encryption);
    }
}

TEST(ArchiveEncryption, AnArchiveKeepsItsMethodWhateverIsAddedOrSaved) {
    for (const Encryption encryption : {Encryption::traditional, Encryption::aes128, Encryption::aes256}) {
        WindowProgram p(ArchiveBuilder().finish());
        p.session.ZipPassword = "sesame";
        p.archives.library().new_encryption = encryption;
        p.main_window.List4.assign({p.dir.write("locked", "content")});
        ASSERT_EQ(p.archives.AddWizardItem(false), library_success);
        p.platform.expect_input("password encoded", "sesame");
        arcview& w = p.open();
        EXPECT_EQ(row_details(w, 0).condition, RowCondition::verified);
        add_files(w, {p.dir.write("from/new", "new content")});
        p.change(0, "changed");
        w.List1.selected = 0;
        w.savzipch.click();
        EXPECT_THAT(encryptions(p), ::testing::ElementsAre(encryption, encryption));
        EXPECT_EQ(p.stored(0), "changed");
        EXPECT_EQ(p.stored(1), "new content");
    }
}

TEST(ArchiveEncryption, ASavedMemberIsAsProtectedAsBefore) {
    WindowProgram p(ArchiveBuilder().add("plain", "1").finish());
    p.session.ZipPassword = "sesame";
    p.archives.library().new_encryption = Encryption::aes256;
    p.main_window.List4.assign({p.dir.write("locked", "content")});
    ASSERT_EQ(p.archives.AddWizardItem(false), library_success);
    p.platform.expect_input("password encoded", "sesame");
    arcview& w = p.open();
    p.change(0, "changed");
    p.change(1, "changed, too");
    w.List1.selected_rows = {0, 1};
    w.savzipch.click();
    EXPECT_THAT(encryptions(p), ::testing::ElementsAre(std::nullopt, Encryption::aes256));
    EXPECT_EQ(p.stored(0), "changed");
    EXPECT_EQ(p.stored(1), "changed, too");
}

}  // namespace
}  // namespace quill::zip
