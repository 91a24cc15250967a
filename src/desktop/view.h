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

/// A value as it was last drawn.
template <class T>
class Drawn {
  public:
    /// Calls draw(value) where `value` is not what was drawn last.
    template <class F>
    void update(const T& value, F&& draw) {
        if (last_ && *last_ == value) return;
        last_ = value;
        draw(value);
    }

  private:
    std::optional<T> last_;
};

/// What draws one window of the program. It binds each control to a widget of the control's name; `sync` brings the
/// widgets to what the controls hold, and what the user does with a widget is handed in to its control's actions.
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

    /// Draws what has changed since the last call, and shows or hides the window.
    void sync();

    /// The window was unloaded: takes it off the screen and hands nothing in any more.
    void retire();

  protected:
    /// Takes the names and roles of the controls of `w`, from its visit_controls.
    template <class W>
    void name_controls(W& w) {
        visit_controls(w, [this](const std::string& name, const char* role, controls::Control& control) {
            names_[&control] = {name, role};
        });
    }

    /// Runs an action of the window for something that the user did.
    void hand_in(const controls::Action& action);

    /// Does `draw` at each sync; it must be cheap where nothing has changed.
    void on_sync(std::function<void()> draw) { draws_.push_back(std::move(draw)); }

    // Binding gives the widget the control's name and role, keeps the two alike, and returns the widget.

    QLabel* bind(controls::Label& label, QLabel* widget);
    OptionButton* bind(controls::Label& label, OptionButton* widget);
    QWidget* bind(controls::Label& label, QWidget* widget);
    QAbstractButton* bind(controls::Button& button, QAbstractButton* widget);
    /// A button that stops a long run: pressed, it acts in the middle of that.
    QAbstractButton* bind_stop(controls::Button& button, QAbstractButton* widget);
    QCheckBox* bind(controls::CheckBox& box, QCheckBox* widget);
    QAction* bind(controls::MenuItem& item, QAction* action);
    /// The item's `click` runs when the menu opens.
    QMenu* bind(controls::MenuItem& item, QMenu* menu);
    /// Binds the menu and adds its items, of which those called "-" are lines.
    QMenu* bind(controls::MenuItem& item, QMenu* menu, const std::vector<controls::MenuItem*>& items);
    QLineEdit* bind(controls::TextBox& box, QLineEdit* widget);
    QPlainTextEdit* bind(controls::TextBox& box, QPlainTextEdit* widget);
    QWidget* bind(controls::Picture& picture, QWidget* widget);
    QWidget* bind(controls::Frame& frame, QWidget* widget);
    DirectoryList* bind(controls::DirListBox& list, DirectoryList* widget);
    DriveBox* bind(controls::DriveListBox& list, DriveBox* widget);

    /// One of `group`, which holds every choice of its group. A choice that acts at once is an OptionButton, any other
    /// a radio button.
    QAbstractButton* bind(controls::Choice& choice, QAbstractButton* widget, std::vector<controls::Choice*> group);

    /// A progress bar: `part` is how far along `whole` it is.
    QProgressBar* bind(controls::Picture& whole, controls::Picture& part, QProgressBar* widget);

    /// Runs the timer while `widget` is on the screen, at its own interval but never faster than each `at_least`
    /// milliseconds.
    void bind(controls::Timer& timer, QWidget* widget, int at_least);

    /// Gives `object` the name of `control`, and the role for those who cannot see it.
    void adopt(const controls::Control& control, QObject* object);
    const std::string& role(const controls::Control& control) const { return names_.at(&control).role; }

    /// The size that the window was told to have, grown with the font.
    QSize told_size() const;

    /// The size to open with, where the screen has room for it.
    virtual QSize best_size() const { return told_size(); }

    /// Destroys the widgets; a view whose members they use calls this first when it is destroyed.
    void destroy_frame();

    /// What to do when the window has come onto the screen.
    virtual void on_shown() {}

    /// Puts the frame on the screen, or takes it off.
    virtual void show_or_hide(bool visible);

    EventLoop& events() const { return events_; }

  private:
    struct Named {
        std::string name, role;
    };
    class CloseFilter;

    void sync_frame();
    void place();
    /// Makes the window as tall as its texts need when wrapped to its width, where the screen has room for it.
    void grow_to_content();
    /// Gives a button its name, caption and state.
    QAbstractButton* bind_look(controls::Button& button, QAbstractButton* widget);
    /// Shows and enables `widget` as `control` says.
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
