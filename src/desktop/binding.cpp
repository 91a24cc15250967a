#include "desktop/directory_list.h"
#include "desktop/option_button.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "desktop/stop_button.h"
#include "desktop/view.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSignalBlocker>

/// The drawing of each kind of control by each kind of widget.
namespace quill::desktop {
namespace {

QColor shown(controls::Colour colour) {
    return {colour.red, colour.green, colour.blue};
}

/// Returns "Option: Help": the role and the text.
QString spoken(const std::string& role, const std::string& text) {
    const QString said = desktop::shown(text);
    const QString what = desktop::shown(role);
    return said.isEmpty() ? what : what + QLatin1String(": ") + said;
}

}  // namespace

QLabel* View::bind(controls::Label& label, QLabel* widget) {
    adopt(label, widget);
    bind_state(label, widget);
    widget->setTextFormat(Qt::PlainText);
    on_sync([this, &label, widget, text = Drawn<std::string>()]() mutable {
        text.update(label.text, [&](const std::string& now) {
            widget->setText(widget->wordWrap() ? breakable(shown_message(now)) : shown_message(now));
            widget->setAccessibleName(spoken(role(label), now));
        });
    });
    return widget;
}

OptionButton* View::bind(controls::Label& label, OptionButton* widget) {
    adopt(label, widget);
    bind_state(label, widget);
    QObject::connect(widget, &QAbstractButton::clicked, widget, [this, &label] { hand_in(label.click); });
    widget->reached = [this, &label] { hand_in(label.hover); };
    on_sync([this, &label, widget, text = Drawn<std::string>(), colour = Drawn<controls::Colour>()]() mutable {
        text.update(label.text, [&](const std::string& now) {
            widget->set_caption(shown_message(now));
            widget->setAccessibleName(spoken(role(label), now));
        });
        colour.update(label.colour, [&](controls::Colour now) { widget->set_colour(shown(now)); });
    });
    return widget;
}

QWidget* View::bind(controls::Label& label, QWidget* widget) {
    adopt(label, widget);
    bind_state(label, widget);
    return widget;
}

QAbstractButton* View::bind(controls::Button& button, QAbstractButton* widget) {
    QObject::connect(widget, &QAbstractButton::clicked, widget, [this, &button] { hand_in(button.click); });
    return bind_look(button, widget);
}

QAbstractButton* View::bind_stop(controls::Button& button, QAbstractButton* widget) {
    mark_stop_button(widget);
    QObject::connect(widget, &QAbstractButton::clicked, widget, [this, &button] { events_.interrupt(button.click); });
    return bind_look(button, widget);
}

QAbstractButton* View::bind_look(controls::Button& button, QAbstractButton* widget) {
    adopt(button, widget);
    bind_state(button, widget);
    on_sync([&button, widget, caption = Drawn<std::string>()]() mutable {
        caption.update(button.caption, [&](const std::string& now) { widget->setText(desktop::shown(now)); });
    });
    return widget;
}

QAbstractButton* View::bind(controls::Choice& choice, QAbstractButton* widget, std::vector<controls::Choice*> group) {
    adopt(choice, widget);
    bind_state(choice, widget);
    widget->setCheckable(true);
    QObject::connect(widget, &QAbstractButton::clicked, widget, [this, &choice, widget, group = std::move(group)] {
        widget->setChecked(true);
        for (controls::Choice* other : group) other->chosen = false;
        choice.chosen = true;
        hand_in(choice.click ? choice.click : [] {});
    });
    auto* option = dynamic_cast<OptionButton*>(widget);
    on_sync([this, &choice, widget, option, caption = Drawn<std::string>()]() mutable {
        caption.update(choice.caption, [&](const std::string& now) {
            if (option != nullptr) {
                option->set_caption(shown_message(now));
            } else {
                widget->setText(desktop::shown(now));
            }
            widget->setAccessibleName(spoken(role(choice), now));
        });
        if (widget->isChecked() == choice.chosen) return;
        const bool exclusive = widget->autoExclusive();
        widget->setAutoExclusive(false);  // a group may have no choice selected
        widget->setChecked(choice.chosen);
        widget->setAutoExclusive(exclusive);
    });
    return widget;
}

QCheckBox* View::bind(controls::CheckBox& box, QCheckBox* widget) {
    adopt(box, widget);
    bind_state(box, widget);
    QObject::connect(widget, &QCheckBox::clicked, widget, [this, &box](bool checked) {
        box.checked = checked;
        hand_in(box.click ? box.click : [] {});
    });
    on_sync([&box, widget, caption = Drawn<std::string>()]() mutable {
        caption.update(box.caption, [&](const std::string& now) { widget->setText(desktop::shown(now)); });
        widget->setChecked(box.checked);
    });
    return widget;
}

QAction* View::bind(controls::MenuItem& item, QAction* action) {
    adopt(item, action);
    QObject::connect(action, &QAction::triggered, action, [this, &item] { hand_in(item.click); });
    on_sync([&item, action, caption = Drawn<std::string>()]() mutable {
        caption.update(item.caption, [&](const std::string& now) { set_text(*action, desktop::shown(now)); });
        if (item.checked) action->setCheckable(true);
        if (action->isCheckable()) action->setChecked(item.checked);  // a click has changed it already
        action->setVisible(item.visible && !item.caption.empty());
        action->setEnabled(item.enabled);
    });
    return action;
}

QMenu* View::bind(controls::MenuItem& item, QMenu* menu, const std::vector<controls::MenuItem*>& items) {
    for (controls::MenuItem* each : items) {
        QAction* action = bind(*each, menu->addAction(QString()));
        action->setSeparator(each->caption == "-");
    }
    return bind(item, menu);
}

QMenu* View::bind(controls::MenuItem& item, QMenu* menu) {
    adopt(item, menu);
    QObject::connect(menu, &QMenu::aboutToShow, menu, [this, &item] {
        if (item.click) hand_in(item.click);
    });
    on_sync([&item, menu, caption = Drawn<std::string>()]() mutable {
        caption.update(item.caption, [&](const std::string& now) {
            const QString title = desktop::shown(now);
            set_text(*menu->menuAction(), title.contains(QLatin1Char('&')) ? title : QLatin1Char('&') + title);
        });
        menu->menuAction()->setVisible(item.visible);
        menu->menuAction()->setEnabled(item.enabled);
    });
    return menu;
}

QLineEdit* View::bind(controls::TextBox& box, QLineEdit* widget) {
    adopt(box, widget);
    bind_state(box, widget);
    QObject::connect(widget, &QLineEdit::textEdited, widget, [this, &box](const QString& text) {
        box.text = typed(text);
        hand_in(box.change ? box.change : [] {});
    });
    on_sync([&box, widget] {
        const QString text = desktop::shown(box.text);
        if (widget->text() != text) widget->setText(text);
    });
    return widget;
}

QPlainTextEdit* View::bind(controls::TextBox& box, QPlainTextEdit* widget) {
    adopt(box, widget);
    bind_state(box, widget);
    QObject::connect(widget, &QPlainTextEdit::textChanged, widget, [this, &box, widget] {
        box.text = typed(widget->toPlainText());
        hand_in(box.change ? box.change : [] {});
    });
    on_sync([&box, widget, drawn = std::string()]() mutable {
        if (drawn == box.text) return;
        drawn = box.text;
        const QString text = shown_message(box.text);
        if (widget->toPlainText() == text) return;
        const QSignalBlocker quiet(widget);
        widget->setPlainText(text);
    });
    return widget;
}

QWidget* View::bind(controls::Picture& picture, QWidget* widget) {
    adopt(picture, widget);
    bind_state(picture, widget);
    return widget;
}

QWidget* View::bind(controls::Frame& frame, QWidget* widget) {
    adopt(frame, widget);
    bind_state(frame, widget);
    return widget;
}

QProgressBar* View::bind(controls::Picture& whole, controls::Picture& part, QProgressBar* widget) {
    adopt(part, widget);
    on_sync([&whole, &part, widget] {
        widget->setRange(0, whole.width);
        widget->setValue(part.left);
    });
    return widget;
}

DirectoryList* View::bind(controls::DirListBox& list, DirectoryList* widget) {
    adopt(list, widget);
    bind_state(list, widget);
    widget->went_to = [this, &list](const std::string& path) {
        list.path = path;
        hand_in(list.change ? list.change : [] {});
    };
    on_sync([&list, widget, drawn = Drawn<std::pair<std::string, bool>>()]() mutable {
        drawn.update({list.path, list.shows_hidden}, [&](const auto& now) { widget->set_path(now.first, now.second); });
    });
    return widget;
}

DriveBox* View::bind(controls::DriveListBox& list, DriveBox* widget) {
    adopt(list, widget);
    bind_state(list, widget);
    widget->went_to = [this, &list](const std::string& drive) {
        list.drive = drive;
        hand_in(list.change ? list.change : [] {});
    };
    on_sync([&list, widget, drive = Drawn<std::string>()]() mutable {
        drive.update(list.drive, [&](const std::string& now) { widget->set_drive(now); });
    });
    return widget;
}

}  // namespace quill::desktop
