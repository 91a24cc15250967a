#include "desktop/repair_view.h"

#include "desktop/option_button.h"
#include "desktop/pieces.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace quill::desktop {
namespace {

/// Makes a framed area for the program's own findings.
QWidget* note(QLabel* text) {
    auto* area = new QFrame;
    area->setFrameShape(QFrame::StyledPanel);
    area->setAutoFillBackground(true);
    area->setBackgroundRole(QPalette::Base);
    text->setForegroundRole(QPalette::Text);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(area);
    const int space = line_height() * 2 / 3;
    layout->setContentsMargins(space, space, space, space);
    layout->addWidget(text);
    return area;
}

/// Gives the focus to the first choice of a page, or to the text for practising.
void focus_first(QWidget* page) {
    if (auto* choice = page->findChild<QAbstractButton*>()) {
        choice->setFocus();
    } else if (auto* text = page->findChild<QPlainTextEdit*>()) {
        text->setFocus();
    }
}

}  // namespace

RepairView::RepairView(decoder::Form3& window, EventLoop& events) : View(window, new QMainWindow, events), w_(window) {
    name_controls(window);
    auto& main = static_cast<QMainWindow&>(frame());
    build_menu(main);
    auto* centre = new QWidget;
    auto* layout = new QVBoxLayout(centre);
    const int space = line_height();
    layout->setContentsMargins(space, space, space, space);
    layout->setSpacing(space / 2);
    QWidget* const main_page = make_main_page();
    QWidget* const tutorial = make_tutorial();
    QWidget* const further = make_further_options();
    for (QWidget* page : {main_page, tutorial, further}) layout->addWidget(page, 1);
    layout->addWidget(make_buttons());
    main.setCentralWidget(centre);
    on_sync([this, main_page, tutorial, further, shown = Drawn<QWidget*>()]() mutable {
        shown.update(w_.Frame1.visible ? tutorial : w_.Frame2.visible ? further : main_page, focus_first);
    });
    auto* escape = new QShortcut(QKeySequence::Cancel, &main);
    QObject::connect(escape, &QShortcut::activated, &main, [this] {
        if (!w_.Frame1.visible) hand_in(w_.Frame2.visible ? w_.Option10.click : w_.Command1.click);
    });
}

void RepairView::build_menu(QMainWindow& frame) {
    QMenu* file = bind(w_.fil, frame.menuBar()->addMenu(QString()));
    for (controls::MenuItem* item : {&w_.ope, &w_.sav, &w_.sava, &w_.prnt}) bind(*item, file->addAction(QString()));
    file->actions().at(1)->setShortcut(QKeySequence::Save);
    file->addSeparator();
    bind(w_.edd, file->addAction(QString()));
    on_sync([this, bar = frame.menuBar()] { bar->setVisible(w_.fil.visible); });
}

QWidget* RepairView::make_main_page() {
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(line_height() * 2 / 3);
    layout->addWidget(bind(w_.Label1, text_label()));
    layout->addWidget(note(bind(w_.Label2, text_label())));
    layout->addWidget(make_choices({&w_.Option1, &w_.Option2, &w_.Option3, &w_.option5}));
    layout->addStretch(1);
    main_page_ = content;
    QWidget* page = scrolling(content);
    on_sync([this, page] { page->setVisible(!w_.Frame1.visible && !w_.Frame2.visible); });
    return page;
}

QWidget* RepairView::make_choices(const std::vector<controls::Choice*>& choices) {
    auto* area = new QWidget;
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(line_height() / 2);
    for (controls::Choice* choice : choices) {
        auto* button = new OptionButton(OptionButton::Look::card);
        bind(*choice, button, choices);
        layout->addWidget(button);
    }
    return area;
}

QWidget* RepairView::make_tutorial() {
    auto* page = new QSplitter(Qt::Vertical);
    bind(w_.Frame1, page);
    auto* content = new QWidget;
    auto* texts = new QVBoxLayout(content);
    texts->setContentsMargins(0, 0, 0, 0);
    texts->addWidget(bind(w_.Label3, text_label()));
    texts->addStretch(1);
    page->addWidget(scrolling(content));
    auto* sample = new QPlainTextEdit;
    sample->setFont(fixed_font());
    sample->setTabChangesFocus(true);
    sample->setLineWrapMode(QPlainTextEdit::NoWrap);
    page->addWidget(bind(w_.Text1, sample));
    page->setChildrenCollapsible(false);
    page->setSizes({line_height() * 23, line_height() * 11});
    page->setStretchFactor(0, 1);
    page->setStretchFactor(1, 1);
    return page;
}

QWidget* RepairView::make_further_options() {
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(line_height() * 2 / 3);
    layout->addWidget(bind(w_.Label4, text_label(1.2, true)));
    layout->addWidget(make_choices({&w_.Option6, &w_.Option7, &w_.Option8, &w_.Option9, &w_.Option10}));
    layout->addStretch(1);
    QWidget* page = scrolling(content);
    bind(w_.Frame2, page);
    return page;
}

QWidget* RepairView::make_buttons() {
    auto* area = new QWidget;
    auto* layout = new QHBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(1);
    layout->addWidget(bind(w_.Command1, push_button()));
    return area;
}

/// Returns a size at which the main page needs no scrolling.
QSize RepairView::best_size() const {
    const int width = std::max(told_size().width(), line_height() * 44);
    const int around = line_height() * 6;
    return {width, main_page_->heightForWidth(width - line_height() * 3) + around};
}

}  // namespace quill::desktop
