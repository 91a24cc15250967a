#include "desktop/directory_list.h"
#include "desktop/drop_list.h"
#include "desktop/main_window_view.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

/// The create wizard's panel: what to create, of which kind, and where.
namespace quill::desktop {
QWidget* MainWindowView::make_create_panel() {
    auto* panel = new QWidget;
    adopt(w_.Picture4, panel);
    const int space = line_height();
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(space * 2, space * 3 / 2, space * 2, space);
    layout->setSpacing(space / 2);
    QLabel* kind = bind(w_.Label2, text_label(1.5, true));
    on_sync([this, kind] { kind->setVisible(w_.Label2.visible && !w_.Label2.text.empty()); });
    layout->addWidget(kind);
    QLabel* step = bind(w_.Label4, text_label(1.1));
    on_sync([this, step] { step->setVisible(w_.Label4.visible && !is_choosing_kind()); });
    layout->addWidget(step);

    auto* choices = new QHBoxLayout;
    choices->setSpacing(space);
    choices->addWidget(make_choices(w_.Frame1, {&w_.Opti(1), &w_.Opti(2), &w_.Opti(5), &w_.Opti(3), &w_.Opti(4)}), 1);
    choices->addWidget(
        make_choices(w_.Frame2, {&w_.Option2(0), &w_.Option2(1), &w_.Option2(2), &w_.Option2(4), &w_.Option4}), 1);
    layout->addLayout(choices);
    on_sync([this, kinds = choices->itemAt(1)->widget(), shown = Drawn<bool>()]() mutable {
        shown.update(w_.Frame2.visible, [kinds](bool now) {
            auto* first = kinds->findChild<QAbstractButton*>();
            if (now && first != nullptr) first->setFocus();
        });
    });
    layout->addWidget(make_directory_page(), 1);
    layout->addStretch(0);
    return panel;
}

QWidget* MainWindowView::make_choices(controls::Frame& frame, std::vector<controls::Choice*> choices) {
    auto* area = new QWidget;
    bind(frame, area);
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(line_height() / 2);
    for (controls::Choice* choice : choices) {
        auto* button = new OptionButton(OptionButton::Look::card);
        bind(*choice, button, choices);
        layout->addWidget(button);
    }
    layout->addStretch(1);
    return area;
}

QWidget* MainWindowView::make_directory_page() {
    auto* page = new QWidget;
    const int space = line_height();
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(space / 2);
    layout->addWidget(bind(w_.Drive1, new DriveBox), 0, Qt::AlignLeft);
    layout->addWidget(bind(w_.Dir1, new DirectoryList), 1);
    layout->addWidget(bind(w_.Label5, text_label()));
    layout->addWidget(make_name_page());
    layout->addWidget(make_files_page(), 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(bind(w_.back, push_button()));
    buttons->addStretch(1);
    for (controls::Button* button : {&w_.open_made, &w_.show_made, &w_.Command1, &w_.Command2}) {
        buttons->addWidget(bind(*button, push_button()));
    }
    layout->addLayout(buttons);
    on_sync([this, page] { page->setVisible(!is_choosing_kind()); });
    return page;
}

QWidget* MainWindowView::make_name_page() {
    auto* page = new QWidget;
    auto* layout = new QGridLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](int row, controls::Label& heading, controls::TextBox& box) {
        auto* line = new QLineEdit;
        QLabel* label = bind(heading, plain_label());
        label->setBuddy(line);
        layout->addWidget(label, row, 0);
        layout->addWidget(bind(box, line), row, 1);
        QObject::connect(line, &QLineEdit::returnPressed, page, [this] { hand_in(w_.Command1.click); });
        return line;
    };
    QLineEdit* name = add(0, w_.Label6, w_.Text2);
    add(1, w_.Label9, w_.Text3)->setEchoMode(QLineEdit::Password);
    layout->addWidget(bind(w_.Label10, text_label()), 2, 1);
    layout->addWidget(bind(w_.Label11, text_label()), 3, 1);
    layout->addWidget(bind(w_.old_protection, new QCheckBox), 4, 1);
    layout->setRowStretch(5, 1);
    on_sync([this, page, name, shown = Drawn<bool>()]() mutable {
        page->setVisible(w_.Text2.visible);
        shown.update(w_.Text2.visible, [name](bool now) {
            if (now) name->setFocus();
        });
    });
    return page;
}

QWidget* MainWindowView::make_files_page() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* list = new DropList;
    adopt(w_.List1, list);
    list->dropped = [this](const std::vector<std::string>& paths) {
        if (files_dropped) hand_in([this, paths] { files_dropped(paths); });
    };
    on_sync([this, list, revision = Drawn<std::uint64_t>()]() mutable {
        revision.update(w_.List1.revision(), [&](std::uint64_t) {
            list->clear();
            for (const std::string& item : w_.List1.items()) list->addItem(shown_name(item));
        });
    });
    layout->addWidget(list, 1);
    auto* line = new QHBoxLayout;
    line->addWidget(bind(w_.Label12, plain_label()));
    line->addStretch(1);
    line->addWidget(bind(w_.Check1, new QCheckBox));
    line->addWidget(bind(w_.Command3, push_button()));
    layout->addLayout(line);
    on_sync([this, page] { page->setVisible(w_.List1.visible); });
    return page;
}

bool MainWindowView::is_choosing_kind() const {
    return w_.Frame1.visible || w_.Frame2.visible;
}

}  // namespace quill::desktop
