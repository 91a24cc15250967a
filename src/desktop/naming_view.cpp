#include "desktop/naming_view.h"

#include "desktop/directory_list.h"
#include "desktop/pieces.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <vector>

namespace quill::desktop {
NamingView::NamingView(decoder::Form4& window, EventLoop& events) : View(window, new QWidget, events), w_(window) {
    name_controls(window);
    auto* layout = new QVBoxLayout(&frame());
    const int space = line_height();
    layout->setContentsMargins(space, space, space, space);
    layout->addWidget(make_naming_panel());
    layout->addWidget(make_favorite_panel());
    auto* leave = new QShortcut(QKeySequence::Cancel, &frame());
    QObject::connect(leave, &QShortcut::activated, &frame(),
                     [this] { hand_in(w_.Frame2.visible ? w_.Command2.click : w_.Command4.click); });
}

QWidget* NamingView::make_naming_panel() {
    auto* panel = new QWidget;
    bind(w_.Frame1, panel);
    const int space = line_height();
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(space * 3 / 4);
    QLabel* why = bind(w_.Label4, text_label());
    why->setMinimumWidth(why->fontMetrics().averageCharWidth() * 56);
    layout->addWidget(why);
    QLabel* hint = bind(w_.Label3, text_label(1.0, true));
    on_sync([this, hint] { hint->setVisible(w_.Label3.visible && !w_.Label3.text.empty()); });
    layout->addWidget(hint);
    layout->addWidget(make_extensions());

    auto* own = new QHBoxLayout;
    auto* box = new QLineEdit;
    QLabel* leads = bind(w_.Label2, text_label());
    leads->setWordWrap(false);
    leads->setBuddy(box);
    own->addWidget(leads);
    own->addWidget(bind(w_.Text1, box), 1);
    QObject::connect(box, &QLineEdit::returnPressed, &frame(), [this] { hand_in(w_.Command3.click); });
    layout->addLayout(own);
    layout->addStretch(1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(bind(w_.Command3, push_button()));
    buttons->addWidget(bind(w_.Command4, push_button()));
    layout->addLayout(buttons);
    return panel;
}

QWidget* NamingView::make_extensions() {
    auto* area = new QWidget;
    auto* layout = new QHBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(line_height());
    std::vector<controls::Choice*> group;
    w_.Option1.for_each([&](int, controls::Choice& choice) { group.push_back(&choice); });
    for (controls::Choice* choice : group) {
        auto* button = new QRadioButton;
        layout->addWidget(bind(*choice, button, group));
        new QShortcut(
            QKeySequence(Qt::Key_Return), button, &frame(), [this] { hand_in(w_.Command3.click); }, Qt::WidgetShortcut);
    }
    layout->addStretch(1);
    return area;
}

QWidget* NamingView::make_favorite_panel() {
    auto* panel = new QWidget;
    bind(w_.Frame2, panel);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    QLabel* copied = bind(w_.Label1, text_label());
    on_sync([this, copied] { copied->setVisible(!w_.Label1.text.empty()); });
    layout->addWidget(copied);
    layout->addWidget(bind(w_.Drive1, new DriveBox), 0, Qt::AlignLeft);
    layout->addWidget(bind(w_.Dir1, new DirectoryList), 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(bind(w_.Command1, push_button()));
    buttons->addWidget(bind(w_.Command2, push_button()));
    layout->addLayout(buttons);
    return panel;
}

void NamingView::on_shown() {
    QWidget* first = nullptr;
    if (w_.Frame1.visible) {
        first = frame().findChild<QRadioButton*>();
    } else {
        first = frame().findChild<QListWidget*>();
    }
    if (first != nullptr) first->setFocus();
}

}  // namespace quill::desktop
