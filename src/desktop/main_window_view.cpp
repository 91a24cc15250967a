#include "desktop/main_window_view.h"

#include "desktop/picture_preview.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "desktop/star_panel.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QStackedWidget>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>

namespace quill::desktop {
namespace {

/// Returns the single dragged local file; empty for anything else.
std::string dragged_file(const QMimeData* data) {
    return data->hasUrls() && data->urls().size() == 1 ? local_path(data->urls().front()) : std::string();
}

}  // namespace

MainFrame::MainFrame() {
    setAcceptDrops(true);
}

void MainFrame::dragEnterEvent(QDragEnterEvent* event) {
    if (!dragged_file(event->mimeData()).empty()) event->acceptProposedAction();
}

void MainFrame::dropEvent(QDropEvent* event) {
    const std::string path = dragged_file(event->mimeData());
    event->acceptProposedAction();
    if (dropped && !path.empty()) dropped(path);
}

void MainFrame::keyPressEvent(QKeyEvent* event) {
    const int number = event->key() - Qt::Key_0;
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (plain && number >= 1 && number <= 9 && number_pressed && number_pressed(number)) return;
    QMainWindow::keyPressEvent(event);
}

void MainFrame::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && activated) activated();
}

MainWindowView::MainWindowView(shell::swit& window, EventLoop& events)
    : View(window, new MainFrame, events), w_(window), results_(window) {
    name_controls(window);
    build_menus();
    build_panels();
    main_frame().dropped = [this](const std::string& path) {
        if (dropped) hand_in([this, path] { dropped(path); });
    };
    main_frame().number_pressed = [this](int number) { return press_number(number); };
    main_frame().activated = [this] { results_.refresh(true); };
}

void MainWindowView::build_menus() {
    QMenuBar* bar = main_frame().menuBar();
    const auto add = [this](QMenu* menu, controls::MenuItem& item, const QKeySequence& keys = {}) {
        QAction* action = menu->addAction(QString());
        action->setShortcut(keys);
        action->setMenuRole(QAction::NoRole);
        bind(item, action);
    };
    QMenu* file = bind(w_.fifi, bar->addMenu(QString()));
    add(file, w_.ope);
    add(file, w_.another, QKeySequence::Open);
    add(file, w_.mpics);
    add(file, w_.ofpl);
    add(file, w_.crzip, QKeySequence::New);
    file->addSeparator();
    add(file, w_.exi, QKeySequence(Qt::CTRL | Qt::Key_Q));
    QMenu* tutorial = bind(w_.tutu, bar->addMenu(QString()));
    add(tutorial, w_.intro);
    add(tutorial, w_.huse);
    QMenu* theme = bind(w_.xpmen, tutorial->addMenu(QString()));
    add(theme, w_.xpth);
    QMenu* about = bind(w_.hel, bar->addMenu(QString()));
    add(about, w_.rdhlp, QKeySequence::HelpContents);
    add(about, w_.mkzipdef);
    add(about, w_.reged);
    about->addSeparator();
    add(about, w_.abzip);
}

void MainWindowView::build_panels() {
    auto* centre = new QWidget;
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    panels_ = new QStackedWidget;
    panels_->addWidget(make_start_panel());
    panels_->addWidget(make_results_panel());
    panels_->addWidget(make_create_panel());
    layout->addWidget(panels_, 1);
    layout->addWidget(make_file_line());
    main_frame().setCentralWidget(centre);
    on_sync([this] { show_uppermost_panel(); });
}

QWidget* MainWindowView::make_file_line() {
    QLabel* line = text_label();
    const int space = line->fontMetrics().height() / 2;
    line->setContentsMargins(space * 2, space, space * 2, space);
    bind(w_.Label3, line);
    on_sync([this, line] { line->setVisible(w_.Label3.visible && !w_.Label3.text.empty()); });
    return line;
}

void MainWindowView::show_uppermost_panel() {
    enum Panel { start_panel, results_panel, create_panel };
    const Panel at_rest = w_.Picture4.visible ? create_panel : w_.Picture2.visible ? results_panel : start_panel;
    const Panel uppermost = w_.stop.visible ? start_panel : at_rest;
    if (panels_->currentIndex() == uppermost) return;
    panels_->setCurrentIndex(uppermost);
    if (uppermost == results_panel && !w_.List3.selected && w_.List3.count() > 0) {
        w_.List3.selected = w_.List3.count() - 1;
        hand_in(w_.List3.change);
    }
    focus_panel();
}

void MainWindowView::focus_panel() {
    if (panels_->currentWidget()->isAncestorOf(results_list_)) {
        results_list_->setFocus();
        return;
    }
    for (QWidget* next = panels_->currentWidget()->nextInFocusChain(); next != panels_->currentWidget();
         next = next->nextInFocusChain()) {
        if (!panels_->currentWidget()->isAncestorOf(next) || next->isHidden()) continue;
        if ((next->focusPolicy() & Qt::TabFocus) == 0 || !next->isEnabledTo(panels_)) continue;
        next->setFocus();
        return;
    }
}

bool MainWindowView::press_number(int number) {
    const bool at_start = !w_.Picture4.visible && !w_.Picture2.visible;
    if (!at_start || !w_.apt.has(number) || !w_.apt(number).visible || !w_.apt(number).enabled) return false;
    options_.at(static_cast<std::size_t>(number - w_.apt.lower_bound()))->setFocus();
    hand_in(w_.apt(number).click);
    return true;
}

void MainWindowView::on_shown() {
    focus_panel();
}

}  // namespace quill::desktop
