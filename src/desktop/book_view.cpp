#include "desktop/book_view.h"

#include "desktop/pieces.h"
#include "desktop/plain_browser.h"
#include "desktop/shown_text.h"

#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QListWidget>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>

#include <utility>

namespace quill::desktop {
namespace {

constexpr int twips_per_pixel = 15;

/// Returns the screens' places on the desktop, that of the main one first, less `title` pixels of height.
std::vector<htx::ScreenArea> screens(int title) {
    std::vector<htx::ScreenArea> areas;
    const auto add = [&](const QScreen* screen) {
        const QRectF area = screen->availableGeometry();
        const auto twips = [](double pixels) { return static_cast<float>(pixels * twips_per_pixel); };
        areas.push_back({twips(area.left()), twips(area.top()), twips(area.width()), twips(area.height() - title)});
    };
    add(QGuiApplication::primaryScreen());
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen != QGuiApplication::primaryScreen()) add(screen);
    }
    return areas;
}

}  // namespace

void BookFrame::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (isVisible() && !isMaximized() && !isFullScreen() && resized) resized();
}

BookView::BookView(htx::Form7& window, EventLoop& events) : View(window, new BookFrame, events), w_(window) {
    name_controls(window);
    build_menus();
    screens_ = new QStackedWidget;
    screens_->addWidget(make_reading());
    screens_->addWidget(make_contents());
    book_frame().setCentralWidget(screens_);
    on_sync([this] { screens_->setCurrentIndex(w_.Frame2.visible ? 1 : 0); });
    auto* leave = new QShortcut(QKeySequence::Cancel, &frame());
    QObject::connect(leave, &QShortcut::activated, &frame(), [this] {
        if (w_.Frame2.visible) hand_in(w_.Command5.click);
        if (w_.hits_panel.visible) hand_in(w_.hits_close.click);
    });
    book_frame().resized = [this] {
        w_.left = frame().x() * twips_per_pixel;
        w_.top = frame().y() * twips_per_pixel;
        w_.width = frame().width() * twips_per_pixel;
        w_.height = frame().height() * twips_per_pixel;
        hand_in([this] { w_.resized(); });
    };
    connect_browser();
}

BookView::~BookView() {
    w_.attach(nullptr);
    destroy_frame();
}

void BookView::connect_browser() {
    // The browser reports while it is still executing a request.
    const auto later = [this](controls::Action action) {
        QMetaObject::invokeMethod(
            browser_, [this, action = std::move(action)] { hand_in(action); }, Qt::QueuedConnection);
    };
    browser_->arrived = [this, later](const std::string& page, const std::string& title) {
        later([this, page, title] {
            w_.navigated(page);
            w_.titled(title);
        });
    };
    browser_->clicked = [this, later](const std::string& page, const std::string& address) {
        later([this, page, address] { w_.follow(page, address); });
    };
    browser_->zoomed = [this](int steps) { hand_in([this, steps] { w_.zoom_by(steps); }); };
    browser_->turned = [this](bool forward) { hand_in(forward ? w_.nxt.click : w_.prv.click); };
    w_.attach(browser_);
}

void BookView::build_menus() {
    QMenuBar* bar = book_frame().menuBar();
    const auto add = [this](QMenu* menu, controls::MenuItem& item, const QKeySequence& keys = {}) {
        QAction* action = menu->addAction(QString());
        action->setShortcut(keys);
        action->setMenuRole(QAction::NoRole);
        bind(item, action);
    };
    QMenu* file = bind(w_.fil, bar->addMenu(QString()));
    add(file, w_.ope, QKeySequence::Open);
    add(file, w_.prn, QKeySequence::Print);
    add(file, w_.exi, QKeySequence(Qt::CTRL | Qt::Key_Q));
    QMenu* edit = bind(w_.edi, bar->addMenu(QString()));
    add(edit, w_.cpy, QKeySequence::Copy);
    add(edit, w_.sel, QKeySequence::SelectAll);
    QMenu* page = bind(w_.pag, bar->addMenu(QString()));
    add(page, w_.fst, QKeySequence(Qt::CTRL | Qt::Key_Home));
    add(page, w_.prv, QKeySequence(Qt::CTRL | Qt::Key_PageUp));
    add(page, w_.nxt, QKeySequence(Qt::CTRL | Qt::Key_PageDown));
    add(page, w_.lst, QKeySequence(Qt::CTRL | Qt::Key_End));
    add(page, w_.goto_page, QKeySequence(Qt::CTRL | Qt::Key_G));
    add(page, w_.forth, QKeySequence::Forward);
    QMenu* view = bind(w_.vie, bar->addMenu(QString()));
    add(view, w_.larger, QKeySequence::ZoomIn);
    add(view, w_.smaller, QKeySequence::ZoomOut);
    add(view, w_.usual, QKeySequence(Qt::CTRL | Qt::Key_0));
    QMenu* search = bind(w_.sea, bar->addMenu(QString()));
    add(search, w_.fnd, QKeySequence::Find);
    add(search, w_.fnb, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
    add(search, w_.again, QKeySequence(Qt::Key_F3));
    add(search, w_.earlier, QKeySequence(Qt::SHIFT | Qt::Key_F3));
    QMenu* help = bind(w_.hlp, bar->addMenu(QString()));
    add(help, w_.gui, QKeySequence::HelpContents);
    add(help, w_.abt);
}

QWidget* BookView::make_reading() {
    auto* screen = new QWidget;
    auto* layout = new QVBoxLayout(screen);
    layout->setContentsMargins(0, 0, 0, line_height() / 2);
    browser_ = new PlainBrowser(w_);
    bind(w_.WebBrowser1, static_cast<QWidget*>(browser_));
    auto* parts = new QSplitter(Qt::Horizontal);
    parts->setChildrenCollapsible(false);
    parts->addWidget(browser_);
    parts->addWidget(make_hits());
    parts->setStretchFactor(0, 3);
    parts->setStretchFactor(1, 1);
    layout->addWidget(parts, 1);
    layout->addWidget(make_buttons());
    return screen;
}

QWidget* BookView::make_buttons() {
    auto* area = new QWidget;
    auto* layout = new QHBoxLayout(area);
    layout->setContentsMargins(line_height() / 2, 0, line_height() / 2, 0);
    w_.Command3.for_each([&](int i, controls::Button& button) {
        layout->addWidget(bind(button, push_button()));
        if (i != 0) return;
        auto* back = new QShortcut(QKeySequence::Back, &frame());
        QObject::connect(back, &QShortcut::activated, &frame(), [this] { hand_in(w_.Command3(0).click); });
    });
    layout->addWidget(bind(w_.Command4, push_button()));
    layout->addStretch(1);
    layout->addWidget(bind(w_.Label2, plain_label()));
    layout->addWidget(bind(w_.Command1, push_button()));
    layout->addWidget(bind(w_.Command2, push_button()));
    return area;
}

QWidget* BookView::make_hits() {
    auto* area = new QWidget;
    bind(w_.hits_panel, area);
    auto* layout = new QVBoxLayout(area);
    layout->addWidget(bind(w_.hits_found, text_label()));
    layout->addWidget(bind_rows(w_.hits), 1);
    layout->addWidget(bind(w_.hits_close, push_button()));
    return area;
}

QWidget* BookView::make_contents() {
    auto* screen = new QWidget;
    adopt(w_.Frame2, screen);
    auto* around = new QVBoxLayout(screen);
    auto* box = new QGroupBox(shown(w_.Frame1.caption));
    adopt(w_.Frame1, box);
    around->addWidget(box);
    auto* layout = new QVBoxLayout(box);
    QLabel* wait = bind(w_.Label4, plain_label());
    on_sync([this, wait] { wait->setVisible(!w_.List3.visible); });
    layout->addWidget(wait);
    auto* lists = new QSplitter(Qt::Horizontal);
    lists->setChildrenCollapsible(false);
    lists->addWidget(bind_rows(w_.List3));
    lists->addWidget(bind_rows(w_.List4));
    lists->setStretchFactor(0, 3);
    lists->setStretchFactor(1, 1);
    layout->addWidget(lists, 1);
    on_sync([this, lists] { lists->setVisible(w_.List3.visible); });
    layout->addWidget(bind(w_.Label5, text_label()));
    layout->addWidget(bind(w_.Command5, push_button()), 0, Qt::AlignRight);
    return screen;
}

QListWidget* BookView::bind_rows(controls::ListBox& list) {
    auto* widget = new QListWidget;
    adopt(list, widget);
    const auto choose = [this, &list, widget] {
        if (widget->currentRow() < 0) return;
        list.selected = static_cast<std::size_t>(widget->currentRow());
        hand_in(list.change);
    };
    QObject::connect(widget, &QListWidget::itemClicked, widget, choose);
    QObject::connect(widget, &QListWidget::itemActivated, widget, choose);
    on_sync([&list, widget, revision = Drawn<std::uint64_t>(), selected = Drawn<std::size_t>()]() mutable {
        revision.update(list.revision(), [&](std::uint64_t) {
            widget->clear();
            for (const std::string& item : list.items()) widget->addItem(shown_name(item));
            selected = {};
        });
        selected.update(list.selected.value_or(0),
                        [&](std::size_t row) { widget->setCurrentRow(static_cast<int>(row)); });
    });
    return widget;
}

void BookView::place() {
    // The system adds the title bar later. It must not end up above the screen.
    const int title = frame().style()->pixelMetric(QStyle::PM_TitleBarHeight);
    if (w_.wanted.width > 0) w_.fit_to(screens(title));
    frame().setGeometry(w_.left / twips_per_pixel, w_.top / twips_per_pixel + title, w_.width / twips_per_pixel,
                        w_.height / twips_per_pixel);
}

void BookView::on_shown() {
    browser_->setFocus();
}

}  // namespace quill::desktop
