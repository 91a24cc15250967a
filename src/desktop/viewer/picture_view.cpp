#include "desktop/viewer/picture_view.h"

#include "desktop/pieces.h"
#include "viewer/open_document.h"
#include "viewer/picture_layout.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>

#include <array>
#include <utility>

namespace quill::desktop {
namespace {

using controls::MenuItem;

constexpr int twips_per_pixel = 15;
constexpr int column_width = 1815;                    // twips
constexpr int frame_width = 120, frame_height = 500;  // twips of a window around its picture

/// The action of a key.
enum class Does { nothing, next, previous, larger, smaller, fit, natural, whole_screen, leave };

Does meaning_of(int key) {
    switch (key) {
        case Qt::Key_Right:
        case Qt::Key_Down:
        case Qt::Key_PageDown:
        case Qt::Key_Space:
            return Does::next;
        case Qt::Key_Left:
        case Qt::Key_Up:
        case Qt::Key_PageUp:
        case Qt::Key_Backspace:
            return Does::previous;
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            return Does::larger;
        case Qt::Key_Minus:
            return Does::smaller;
        case Qt::Key_0:
            return Does::fit;
        case Qt::Key_1:
            return Does::natural;
        case Qt::Key_F11:
            return Does::whole_screen;
        case Qt::Key_Escape:
            return Does::leave;
        default:
            return Does::nothing;
    }
}

}  // namespace

PictureView::PictureView(viewer::frmPic& window, EventLoop& events, ViewerDesk& desk)
    : View(window, new QWidget, events), w_(window), desk_(desk), pane_(new PicturePane(window)) {
    name_controls(window);
    auto* layout = new QVBoxLayout(&frame());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(pane_, 1);
    QLabel* note = bind(w_.note, text_label());
    note->setMargin(line_height() / 3);
    layout->addWidget(note);
    layout->addWidget(make_pages());
    bind(w_.frame_time, &frame(), 1);
    on_sync([this, note] { note->setVisible(w_.note.visible && w_.Image1.pixels.bytes != nullptr); });
    adopt(w_.Picture1, pane_);
    adopt(w_.Image1, pane_->viewport());
    frame().setFocusProxy(pane_);
    connect_pane();
    const QList<QAction*> menus = make_menus();
    make_popup();
    if (desk.frame) {
        sub_window_ = desk.frame->add_window(&frame(), {menus, [this] { hand_in(w_.activate); }});
        sub_window_->setSystemMenu(nullptr);
    }
    on_sync([this] {
        pane_->sync();
        place();
    });
    on_sync([this, whole = false]() mutable {
        if (std::exchange(whole, w_.full_screen) == w_.full_screen || !desk_.frame || sub_window_ == nullptr) return;
        desk_.frame->set_whole_screen(w_.full_screen);
        sub_window_->setWindowFlag(Qt::FramelessWindowHint, w_.full_screen);  // no title above the picture
        w_.full_screen ? sub_window_->showMaximized() : sub_window_->showNormal();
        pane_->setFocus();
    });
}

PictureView::~PictureView() {
    if (w_.full_screen && desk_.frame) desk_.frame->set_whole_screen(false);
    delete sub_window_;
}

QWidget* PictureView::make_pages() {
    auto* area = new QWidget;
    bind(w_.pages, area);
    auto* layout = new QHBoxLayout(area);
    layout->setContentsMargins(line_height() / 3, line_height() / 4, line_height() / 3, line_height() / 4);
    layout->addWidget(bind(w_.page_back, push_button()));
    layout->addStretch(1);
    layout->addWidget(bind(w_.page_number, plain_label()));
    layout->addStretch(1);
    layout->addWidget(bind(w_.page_on, push_button()));
    return area;
}

void PictureView::connect_pane() {
    pane_->zoomed = [this](double factor, QPointF at) {
        hand_in([this, factor, at] { viewer::zoom_at(w_, factor, at.x(), at.y()); });
    };
    pane_->panned = [this](double right, double down) {
        hand_in([this, right, down] { viewer::pan(w_, right, down); });
    };
    pane_->closed = [this] { hand_in(w_.mend.click); };
    pane_->scrolled = [this] { hand_in(w_.HScroll1.change); };
    pane_->resized = [this](QSize) { take_size(frame().size()); };
    pane_->key_pressed = [this](int key) { return press_key(key); };
}

bool PictureView::press_key(int key) {
    const Does what = meaning_of(key);
    if (what == Does::nothing || (what == Does::leave && !w_.full_screen)) return false;
    hand_in([this, what] {
        constexpr double larger = 1.1, smaller = 0.9;
        const double ratio = pane_->devicePixelRatioF();
        const QPointF middle = QPointF(pane_->viewport()->rect().center()) * ratio;
        switch (what) {
            case Does::next:
                viewer::show_neighbour(w_, 1);
                break;
            case Does::previous:
                viewer::show_neighbour(w_, -1);
                break;
            case Does::larger:
                viewer::zoom_at(w_, larger, middle.x(), middle.y());
                break;
            case Does::smaller:
                viewer::zoom_at(w_, smaller, middle.x(), middle.y());
                break;
            case Does::fit:
                viewer::zoom_to_fit(w_);
                break;
            case Does::natural:
                viewer::zoom_to_natural_size(w_);
                break;
            case Does::whole_screen:
                w_.full_screen = !w_.full_screen;
                break;
            case Does::leave:
                w_.full_screen = false;
                break;
            case Does::nothing:
                break;
        }
    });
    return true;
}

QMenu* PictureView::make_file_menu() {
    auto* menu = new QMenu(&frame());
    const auto add = [&](std::initializer_list<MenuItem*> items) {
        for (MenuItem* item : items) bind(*item, menu->addAction(QString()));
    };
    const auto last_keys = [menu](const QKeySequence& keys) { menu->actions().constLast()->setShortcut(keys); };
    add({&w_.fopen, &w_.adir});
    bind(w_.rd, menu->addMenu(QString()), w_.lastf.all());
    menu->addSeparator();
    add({&w_.f(2)});
    last_keys(QKeySequence::Save);
    menu->addSeparator();
    add({&w_.f(4), &w_.f(5), &w_.f(6)});
    last_keys(Qt::Key_F9);
    menu->addSeparator();
    add({&w_.f(8), &w_.f(9), &w_.f(10), &w_.f(11)});
    menu->addSeparator();
    add({&w_.f(13), &w_.ssp});
    menu->addSeparator();
    add({&w_.mend});
    last_keys(QKeySequence(Qt::CTRL | Qt::Key_W));
    return bind(w_.fmen, menu);
}

QList<QAction*> PictureView::make_menus() {
    QMenu* file = make_file_menu();
    QMenu* levels = bind(w_.zmen, new QMenu(&frame()), w_.zo.all());
    std::vector<MenuItem*> favorites = w_.favmen.all();
    favorites.insert(favorites.begin(), &w_.addcur);
    QMenu* favorite = bind(w_.favme, new QMenu(&frame()), favorites);
    std::vector<MenuItem*> adjust = {&w_.fliph, &w_.flipv, &w_.rotaten, &w_.rotatea,
                                     &w_.lsid,  &w_.sm(1), &w_.sm(2),   &w_.gbh};
    for (MenuItem* item : w_.mdm.all()) adjust.push_back(item);
    QMenu* adjusting = bind(w_.admen, new QMenu(&frame()), adjust);
    QMenu* windows = make_window_menu();
    QMenu* help = bind(w_.hlm, new QMenu(&frame()), w_.h.all());
    help->actions().constFirst()->setShortcut(QKeySequence::HelpContents);
    QAction* larger = bind(w_.zi, new QAction(&frame()));
    QAction* smaller = bind(w_.zox, new QAction(&frame()));
    return {file->menuAction(),
            larger,
            smaller,
            levels->menuAction(),
            favorite->menuAction(),
            adjusting->menuAction(),
            windows->menuAction(),
            help->menuAction()};
}

QMenu* PictureView::make_window_menu() {
    QMenu* menu = bind(w_.wins, new QMenu(&frame()), {&w_.tile, &w_.cascade, &w_.tabs});
    menu->addSeparator();
    QObject::connect(menu, &QMenu::aboutToShow, menu, [this, menu] { list_windows(menu); });
    return menu;
}

void PictureView::list_windows(QMenu* menu) {
    constexpr int own_items = 4;  // including the line below them
    const QList<QAction*> actions = menu->actions();
    for (qsizetype i = own_items; i < actions.size(); ++i) delete actions[i];
    if (!desk_.frame) return;
    for (QMdiSubWindow* window : desk_.frame->windows()) {
        QString title = window->windowTitle();
        QAction* action = menu->addAction(title.replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setCheckable(true);
        action->setChecked(window == sub_window_);
        QObject::connect(action, &QAction::triggered, window, [frame = desk_.frame, window] {
            if (frame) frame->area().setActiveSubWindow(window);
        });
    }
}

void PictureView::make_popup() {
    auto* popup = new QMenu(pane_);
    const auto add = [&](std::initializer_list<MenuItem*> items) {
        for (MenuItem* item : items) bind(*item, popup->addAction(QString()));
    };
    add({&w_.ipm(1)});
    popup->addSeparator();
    add({&w_.ipm(3), &w_.ipm(4)});
    bind(w_.ipm(5), popup->addMenu(QString()), w_.zl.all());
    popup->addSeparator();
    add({&w_.scm(1), &w_.scm(2), &w_.fhv(1), &w_.fhv(2)});
    adopt(w_.ipu, popup);
    pane_->menu_wanted = [popup](QPoint at) { popup->popup(at); };
}

void PictureView::show_or_hide(bool visible) {
    if (sub_window_ == nullptr) return;
    place();
    frame().setVisible(visible);
    sub_window_->setVisible(visible);
    if (!visible || !desk_.frame) return;
    desk_.frame->area().setActiveSubWindow(sub_window_);
    pane_->setFocus();
}

/// Stores the user's size of the window, and lays out its picture in it.
void PictureView::take_size(QSize client) {
    if (!w_.visible || client.isEmpty()) return;
    const int width = client.width() * twips_per_pixel + frame_width;
    const int height = client.height() * twips_per_pixel + frame_height;
    if (std::abs(width - w_.width) < twips_per_pixel && std::abs(height - w_.height) < twips_per_pixel) return;
    hand_in([this, width, height] {
        w_.width = width;
        w_.height = height;
        placed_.update({w_.left, w_.top, width, height}, [](const auto&) {});
        viewer::lay_out(w_);
    });
}

/// Moves the window to the place chosen by the program.
void PictureView::place() {
    if (sub_window_ == nullptr) return;
    placed_.update({w_.left, w_.top, w_.width, w_.height}, [&](const std::array<int, 4>& to) {
        if (sub_window_->isMaximized() || w_.full_screen) return;
        const QMargins margins = sub_window_->contentsMargins();
        const QSize client((to[2] - frame_width) / twips_per_pixel, (to[3] - frame_height) / twips_per_pixel);
        const QSize least(line_height() * 14, line_height() * 7);
        QSize size = client.expandedTo(least).grownBy(margins);
        const QSize room = desk_.frame ? desk_.frame->area().size() : size;
        size += pane_->bars_beside(client.boundedTo(room.shrunkBy(margins)));
        const int left = std::max(0, to[0] - column_width) / twips_per_pixel;
        sub_window_->resize(size.boundedTo(room));
        sub_window_->move(std::min(left, std::max(0, room.width() - size.width())), to[1] / twips_per_pixel);
    });
}

}  // namespace quill::desktop
