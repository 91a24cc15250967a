#include "desktop/directory_list.h"
#include "desktop/main_window_view.h"
#include "desktop/pieces.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

/// The create wizard's panel: what to create, which kind of it, and where.
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
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(bind(w_.Command1, push_button()));
    layout->addLayout(buttons);
    on_sync([this, page] { page->setVisible(!is_choosing_kind()); });
    return page;
}

bool MainWindowView::is_choosing_kind() const {
    return w_.Frame1.visible || w_.Frame2.visible;
}

}  // namespace quill::desktop
