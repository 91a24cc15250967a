#include "decoder/naming_window.h"
#include "decoder/repair_guide.h"
#include "desktop/about_view.h"
#include "desktop/archive_view.h"
#include "desktop/chooser_view.h"
#include "desktop/contents_view.h"
#include "desktop/main_window_view.h"
#include "desktop/naming_view.h"
#include "desktop/picture_wizard_view.h"
#include "desktop/repair_view.h"
#include "desktop/view_fixture.h"
#include "encoder/file_chooser.h"
#include "htx/picture_wizard/picture_wizard.h"
#include "shell/about_box.h"
#include "shell/main_workflow.h"
#include "zip/archive_window.h"
#include "zip/contents_window.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTreeWidget>

#include <functional>
#include <set>
#include <type_traits>

namespace quill::tests {
namespace {

using namespace controls;

/// The duties of every view to the controls of its window.
class ViewContract : public ViewTest {
  protected:
    /// Controls of these kinds are not drawn.
    static bool is_drawn(const Timer&) { return false; }
    static bool is_drawn(const Label& label) { return !label.text.empty(); }
    static bool is_drawn(const Control&) { return true; }

    static QString accessible_name(QObject* object) {
        if (auto* action = qobject_cast<QAction*>(object)) return action->text();
        if (auto* menu = qobject_cast<QMenu*>(object)) return menu->title();
        return qobject_cast<QWidget*>(object)->accessibleName();
    }

    template <class C>
    static constexpr bool can_be_clicked = requires(C& control) {
        control.click;
    };

    /// Counts the effects of a click on the control's widget.
    template <class C>
    void expect_click(const std::string& name, C& control, QObject* object) {
        int clicks = 0;
        const Action before = std::exchange(control.click, [&clicks] { ++clicks; });
        if (auto* action = qobject_cast<QAction*>(object)) {
            action->trigger();
        } else if (auto* button = qobject_cast<QAbstractButton*>(object)) {
            EXPECT_TRUE(button->focusPolicy() & Qt::TabFocus) << name << " can't be reached by the keyboard";
            button->click();
        } else {
            clicks = 1;  // a menu, or a text that is only clickable
        }
        control.click = before;
        EXPECT_EQ(clicks, 1) << name;
    }

    template <class C>
    void check(const Window& window, const std::string& name, C& control) {
        auto* object = frame_of(window).findChild<QObject*>(QString::fromStdString(name));
        if (!control.visible || !is_drawn(control)) {
            auto* widget = qobject_cast<QWidget*>(object);
            EXPECT_TRUE(widget == nullptr || !widget->isVisible() || is_drawn(control) != control.visible) << name;
            return;
        }
        ASSERT_NE(object, nullptr) << name << " is not drawn";
        EXPECT_FALSE(accessible_name(object).isEmpty()) << name;
        auto* widget = qobject_cast<QWidget*>(object);
        const bool within_reach = widget == nullptr || (widget->isVisible() && widget->isEnabled());
        if constexpr (can_be_clicked<C>) {
            if (within_reach && control.enabled) expect_click(name, control, object);
        }
    }

    /// Checks all controls of the window, except those drawn as a part of another's widget.
    template <class W>
    void check_all(W& window, const std::set<std::string>& parts = {}) {
        views.sync_all();
        ASSERT_NE(views.view_of(window), nullptr);
        std::size_t controls = 0;
        visit_controls(window, [&](const std::string& name, const char*, auto& control) {
            ++controls;
            if (!parts.contains(name)) check(window, name, control);
        });
        EXPECT_GT(controls, 0U);
        EXPECT_TRUE(failures.empty());
    }
};

TEST_F(ViewContract, ThePictureWizardDrawsItsControlsInEachStep) {
    views.add<htx::HtxWiz, desktop::PictureWizardView>();
    for (const char* mode : {htx::book_caption, htx::album_caption}) {
        htx::show_picture_wizard(program.context, mode, {"/gone/a.jpg", "/gone/b.jpg"});
        auto& w = *program.windows.loaded<htx::HtxWiz>();
        views.sync_all();
        run(w.Command1.click);
        while (true) {
            SCOPED_TRACE(w.Label4.text);
            check_all(w, {"bar_done"});
            if (w.step == htx::WizardStep::saving) break;
            run(w.step == htx::WizardStep::titles && w.next_picture.enabled ? w.next_picture.click : w.Command4.click);
        }
    }
}

TEST_F(ViewContract, MainWindowDrawsItsControlsInEachState) {
    views.add<shell::swit, desktop::MainWindowView>();
    shell::swit& w = program.main_window;
    shell::connect_main_window(program.context);
    const std::vector<std::pair<const char*, std::function<void()>>> states = {
        {"idle", [] {}},
        {"archive selected",
         [&] {
             shell::show_file_captions(w, "notes.zip");
             w.apt(3).visible = w.opt(3).visible = true;
             w.Label3.text = "/home/ada/notes.zip";
         }},
        {"decoding",
         [&] {
             w.Picture5.visible = w.doing.visible = w.stop.visible = true;
             w.doing.text = "Decoding notes.mim";
         }},
        {"results",
         [&] {
             w.Picture5.visible = w.doing.visible = w.stop.visible = false;
             w.List3.add("photo.jpg");
             w.Picture2.visible = true;
         }},
        {"create wizard, first step", [&] { w.Picture4.visible = w.Frame1.visible = true; }},
        {"create wizard, kinds",
         [&] {
             w.Option2.for_each([](int i, Choice& choice) { choice.caption = "Kind " + std::to_string(i); });
             w.Frame2.visible = true;
         }},
        {"create wizard, directory", [&] {
             w.Frame1.visible = w.Frame2.visible = false;
             w.Dir1.path = "/";
             w.Drive1.drive = "/";
         }}};
    for (const auto& [name, enter] : states) {
        SCOPED_TRACE(name);
        enter();
        check_all(w);
    }
}

TEST_F(ViewContract, RepairGuideDrawsItsControlsOnEachPage) {
    views.add<decoder::Form3, desktop::RepairView>();
    auto& w = program.windows.load<decoder::Form3>();
    w.Label2.text = "The file has 3 lines.";
    check_all(w);
    w.option5.enabled = true;
    w.Frame2.visible = true;
    check_all(w);
    w.Frame2.visible = false;
    w.Frame1.visible = w.fil.visible = true;
    check_all(w);
}

TEST_F(ViewContract, NamingWindowDrawsItsControlsForBothJobs) {
    views.add<decoder::Form4, desktop::NamingView>();
    auto& w = program.windows.load<decoder::Form4>();
    w.Frame1.visible = true;
    w.Label3.text = "It appears to be a Jpg file";
    check_all(w);
    w.Frame1.visible = false;
    w.Frame2.visible = true;
    w.Dir1.path = "/";
    check_all(w);
}

TEST_F(ViewContract, AboutBoxDrawsItsControls) {
    views.add<shell::AboutBox, desktop::AboutView>();
    check_all(program.windows.load<shell::AboutBox>());
}

TEST_F(ViewContract, ChooserDrawsItsControlsInEachModeAndOnEachPage) {
    using encoder::ChooserMode;
    views.add<encoder::cmdg, desktop::ChooserView>();
    for (const ChooserMode mode : {ChooserMode::open, ChooserMode::collect_pages, ChooserMode::encode_uue}) {
        SCOPED_TRACE(encoder::caption_of(mode));
        auto& w = encoder::show_chooser(program.context, mode, "/");
        check_all(w);
    }
    auto& w = encoder::show_chooser(program.context, ChooserMode::open, "/");
    w.List7.add("part1.uue");
    w.Picture2.visible = true;
    check_all(w);
    w.Picture3.visible = true;
    check_all(w);
}

TEST_F(ViewContract, ContentsWindowDrawsItsControls) {
    views.add<zip::Form1, desktop::ContentsView>();
    auto& w = program.windows.load<zip::Form1>(program.context);
    w.List1.add("11/23/26 07:55\t1903\t3002\t37%\tletter.eml");
    w.visible = true;
    check_all(w, {"Label6", "Label7", "Label8", "Label9"});  // the headings of the columns
    EXPECT_EQ(widget<QTreeWidget>(w, "List1")->topLevelItem(0)->text(0), QStringLiteral("letter.eml"));
}

TEST_F(ViewContract, ArchiveWindowDrawsItsControls) {
    views.add<zip::arcview, desktop::ArchiveWindowView>();
    zip::NewZIP archives(program.context);
    auto& w = program.windows.load<zip::arcview>(program.context, archives);
    w.visible = w.Picture1.visible = true;
    w.Label13.text = "Open or play selected program or file";
    w.Label4.text = "letters.zip";
    std::set<std::string> parts = {"List7", "VScroll2", "lodnone"};  // of the table, and of a menu without items
    w.Image10.for_each([&](int i, zip::IconPicture&) { parts.insert(member_name("Image10", i)); });
    check_all(w, parts);
    w.Picture2.visible = true;
    w.Dir1.path = w.Label5.text = "/";
    w.doing.visible = w.bar.visible = w.stop.visible = true;
    w.doing.text = "Unpacking letters.zip";
    parts.insert("bar");  // drawn with its filled part
    check_all(w, parts);
}

}  // namespace
}  // namespace quill::tests
