#pragma once

#include "controls/control.h"
#include "desktop/event_loop.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class QAbstractButton;
class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPlainTextEdit;
class QProgressBar;

namespace quill::desktop {

class DirectoryList;
class DriveBox;
class OptionButton;

/// The last drawn value.
template <class T>
class Drawn {
  public:
    /// Calls draw(value) if `value` differs from the last drawn one.
    template <class F>
    void update(const T& value, F&& draw) {
        if (last_ && *last_ == value) return;
        last_ = value;
        draw(value);
    }

  private:
    std::optional<T> last_;
};

/// Draws one window of the program. It binds each control to a widget of the control's name; `sync` updates the widgets
/// from the controls, and user input to a widget runs its control's actions.
///
/// A view decides how things look, never what they do.
class View {
  public:
    /// `frame` becomes the window on the screen and belongs to the view.
    View(controls::Window& window, QWidget* frame, EventLoop& events);
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    controls::Window& window() const { return window_; }
    QWidget& frame() const { return *frame_; }

    /// Draws the changes since the last call, and shows or hides the window.
    void sync();

    /// Handles the unloading of the window: removes it from the screen and passes on no more input.
    void retire();

  protected:
    /// Reads the names and roles of the controls of `w` from its visit_controls.
    template <class W>
    void name_controls(W& w) {
        visit_controls(w, [this](const std::string& name, const char* role, controls::Control& control) {
            names_[&control] = {name, role};
        });
    }

    /// Runs an action of the window for an input of the user.
    void hand_in(const controls::Action& action);

    /// Runs `draw` at each sync; it must be cheap if nothing has changed.
    void on_sync(std::function<void()> draw) { draws_.push_back(std::move(draw)); }

    // Binding gives the widget the control's name and role, keeps the two in step, and returns the widget.

    QLabel* bind(controls::Label& label, QLabel* widget);
    OptionButton* bind(controls::Label& label, OptionButton* widget);
    QWidget* bind(controls::Label& label, QWidget* widget);
    QAbstractButton* bind(controls::Button& button, QAbstractButton* widget);
    /// Binds a button that stops a long run: when pressed, it acts in the middle of the run.
    QAbstractButton* bind_stop(controls::Button& button, QAbstractButton* widget);
    QCheckBox* bind(controls::CheckBox& box, QCheckBox* widget);
    QAction* bind(controls::MenuItem& item, QAction* action);
    /// Binds the menu; the item's `click` runs when it opens.
    QMenu* bind(controls::MenuItem& item, QMenu* menu);
    /// Binds the menu and adds its items; those called "-" are lines.
    QMenu* bind(controls::MenuItem& item, QMenu* menu, const std::vector<controls::MenuItem*>& items);
    QLineEdit* bind(controls::TextBox& box, QLineEdit* widget);
    QPlainTextEdit* bind(controls::TextBox& box, QPlainTextEdit* widget);
    QWidget* bind(controls::Picture& picture, QWidget* widget);
    QWidget* bind(controls::Frame& frame, QWidget* widget);
    DirectoryList* bind(controls::DirListBox& list, DirectoryList* widget);
    DriveBox* bind(controls::DriveListBox& list, DriveBox* widget);

    /// Binds one of `group`, which contains every choice of its group. A choice that acts at once is an OptionButton,
    /// any other a radio button.
    QAbstractButton* bind(controls::Choice& choice, QAbstractButton* widget, std::vector<controls::Choice*> group);

    /// Binds a progress bar: the position of `part` in `whole` is the progress.
    QProgressBar* bind(controls::Picture& whole, controls::Picture& part, QProgressBar* widget);

    /// Runs the timer while `widget` is visible, at its own interval but at most every `at_least` milliseconds.
    void bind(controls::Timer& timer, QWidget* widget, int at_least);

    /// Gives `object` the name of `control`, and its role for assistive technology.
    void adopt(const controls::Control& control, QObject* object);
    const std::string& role(const controls::Control& control) const { return names_.at(&control).role; }

    /// Returns the window's specified size, enlarged with the font.
    QSize told_size() const;

    /// Returns the size to open with, if the screen has room for it.
    virtual QSize best_size() const { return told_size(); }

    /// Destroys the widgets; a view with members that they use calls this first in its destructor.
    void destroy_frame();

    /// Is called when the window has appeared on the screen.
    virtual void on_shown() {}

    /// Shows the frame, or hides it.
    virtual void show_or_hide(bool visible);

    EventLoop& events() const { return events_; }

  private:
    struct Named {
        std::string name, role;
    };
    class CloseFilter;

    void sync_frame();
    /// Gives the frame its first place and size, before it is shown.
    virtual void place();
    /// Makes the window as tall as its texts need when wrapped to its width, if the screen has room for it.
    void grow_to_content();
    /// Gives a button its name, caption and state.
    QAbstractButton* bind_look(controls::Button& button, QAbstractButton* widget);
    /// Shows and enables `widget` according to `control`.
    void bind_state(const controls::Control& control, QWidget* widget);

    controls::Window& window_;
    QPointer<QWidget> frame_;
    EventLoop& events_;
    std::map<const controls::Control*, Named> names_;
    std::vector<std::function<void()>> draws_;
    Drawn<bool> drawn_visible_;
    Drawn<std::string> drawn_caption_;
    Drawn<controls::MousePointer> drawn_pointer_;
    bool placed_ = false;
    bool retired_ = false;
};

}  // namespace quill::desktop
