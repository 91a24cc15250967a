#include "decoder/naming_window.h"
#include "decoder/repair_guide.h"
#include "desktop/about_view.h"
#include "desktop/main_window_view.h"
#include "desktop/naming_view.h"
#include "desktop/repair_view.h"
#include "desktop/view_fixture.h"
#include "shell/about_box.h"
#include "shell/main_workflow.h"

#include <QAbstractButton>
#include <QLabel>

#include <functional>
#include <type_traits>

namespace quill::tests {
namespace {

using namespace controls;

/// What every view owes to the controls of its window, whatever they are.
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

    /// Counts what a click on the control's widget sets off.
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
            clicks = 1;  // a menu, or a text that only may be clicked
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

    template <class W>
    void check_all(W& window) {
        views.sync_all();
        ASSERT_NE(views.view_of(window), nullptr);
        std::size_t controls = 0;
        visit_controls(window, [&](const std::string& name, const char*, auto& control) {
            ++controls;
            check(window, name, control);
        });
        EXPECT_GT(controls, 0U);
        EXPECT_TRUE(failures.empty());
    }
};

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
        {"decoding", [&] { w.Picture5.visible = true; }},
        {"results",
         [&] {
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

}  // namespace
}  // namespace quill::tests
