#include "desktop/archive_view.h"

#include "desktop/archive_signs.h"
#include "desktop/directory_list.h"
#include "desktop/drop_list.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "desktop/signs.h"
#include "zip/archive_actions.h"
#include "zip/archive_document.h"

#include <QAction>
#include <QCheckBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace quill::desktop {
namespace {

/// Runs `reached` when the pointer enters a widget.
class HoverFilter final : public QObject {
  public:
    HoverFilter(QWidget* widget, std::function<void()> reached) : QObject(widget), reached_(std::move(reached)) {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Enter) reached_();
        return QObject::eventFilter(watched, event);
    }

  private:
    std::function<void()> reached_;
};

QToolButton* tool_button(ArchiveTool tool, const char* caption) {
    auto* button = new QToolButton;
    button->setIcon(archive_tool_icon(tool, button->palette().buttonText().color()));
    button->setText(QString::fromLatin1(caption));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setIconSize(QSize(line_height(), line_height()) * 3 / 2);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

/// Passes on the clicks and double clicks on a text.
class ClickFilter final : public QObject {
  public:
    ClickFilter(QWidget* widget, std::function<void()> clicked, std::function<void()> double_clicked)
        : QObject(widget), clicked_(std::move(clicked)), double_clicked_(std::move(double_clicked)) {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress) clicked_();
        if (event->type() == QEvent::MouseButtonDblClick) double_clicked_();
        return QObject::eventFilter(watched, event);
    }

  private:
    std::function<void()> clicked_;
    std::function<void()> double_clicked_;
};

}  // namespace

ArchiveFrame::ArchiveFrame() {
    setAcceptDrops(true);
}

void ArchiveFrame::dragEnterEvent(QDragEnterEvent* event) {
    const bool own_rows = event->source() != nullptr;
    if (!own_rows && !dragged_files(event->mimeData()).empty()) event->acceptProposedAction();
}

void ArchiveFrame::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (dropped) dropped(dragged_files(event->mimeData()));
}

void ArchiveFrame::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && activated) activated();
}

ArchiveWindowView::ArchiveWindowView(zip::arcview& window, EventLoop& events)
    : View(window, new ArchiveFrame, events), w_(window) {
    name_controls(window);
    build_menus();
    auto* centre = new QWidget;
    const int space = line_height();
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(space / 2, space / 2, space / 2, space / 2);
    layout->setSpacing(space / 2);
    layout->addWidget(make_toolbar());
    layout->addWidget(make_path());
    auto* middle = new QHBoxLayout;
    middle->setSpacing(space / 2);
    middle->addWidget(make_list(), 3);
    middle->addWidget(make_panel(), 2);
    layout->addLayout(middle, 1);
    layout->addWidget(make_row_state());
    layout->addWidget(make_facts());
    archive_frame().setCentralWidget(centre);
    archive_frame().dropped = [this](std::vector<std::string> paths) {
        hand_in([this, dropped_paths = std::move(paths)] { zip::add_files(w_, dropped_paths); });
    };
    archive_frame().activated = [this] {
        if (w_.visible && w_.watch.enabled) hand_in(w_.watch.tick);
    };
    constexpr int least_milliseconds = 1000;
    bind(w_.watch, &frame(), least_milliseconds);
}

ArchiveWindowView::~ArchiveWindowView() {
    destroy_frame();
}

QSize ArchiveWindowView::best_size() const {
    const QFontMetrics metrics = frame().fontMetrics();
    return told_size().expandedTo(QSize(metrics.averageCharWidth() * 150, metrics.height() * 36));
}

void ArchiveWindowView::on_shown() {
    table_->setFocus();
}

void ArchiveWindowView::build_menus() {
    QMenuBar* bar = archive_frame().menuBar();
    const auto add = [this](QMenu* menu, controls::MenuItem& item, const QKeySequence& keys = {}) {
        QAction* action = menu->addAction(QString());
        action->setShortcut(keys);
        action->setMenuRole(QAction::NoRole);
        return bind(item, action);
    };
    QMenu* file = bind(w_.fil, bar->addMenu(QString()));
    add(file, w_.peo, QKeySequence::Open);
    add(file, w_.pictures);
    extract_ = add(file, w_.extract, QKeySequence(Qt::CTRL | Qt::Key_E));
    test_ = add(file, w_.test, QKeySequence(Qt::CTRL | Qt::Key_T));
    file->addSeparator();
    add(file, w_.rpnex, QKeySequence(Qt::CTRL | Qt::Key_R));
    add(file, w_.exnrp, QKeySequence(Qt::CTRL | Qt::Key_Q));
    QMenu* edit = bind(w_.edi, bar->addMenu(QString()));
    add(edit, w_.undo, QKeySequence::Undo);
    edit->addSeparator();
    add(edit, w_.adtozip, QKeySequence(Qt::Key_Insert));
    add(edit, w_.remzip, QKeySequence::Delete);
    add(edit, w_.savzipch, QKeySequence::Save);
    edit->addSeparator();
    add(edit, w_.lock);
    QMenu* names = bind(w_.nam, bar->addMenu(QString()));
    w_.names_in.for_each([&](int i, controls::MenuItem& item) {
        add(names, item);
        if (i == 0) names->addSeparator();
    });
    QMenu* help = bind(w_.hlp, bar->addMenu(QString()));
    add(help, w_.help, QKeySequence::HelpContents);
    add(help, w_.abt);
}

QMenu* ArchiveWindowView::make_row_menu() {
    QMenu* menu = bind(w_.dvd, new QMenu(table_));
    for (controls::MenuItem* item : {&w_.opt, &w_.exs, &w_.mvs, &w_.ads, &w_.rrm})
        bind(*item, menu->addAction(QString()));
    QMenu* load = bind(w_.lod, menu->addMenu(QString()));
    bind(w_.lodnone, load->addAction(QString()));
    return menu;
}

QToolButton* ArchiveWindowView::make_tool(int index, const char* caption) {
    zip::ToolPicture& tool = w_.Image1(index);
    QToolButton* button = tool_button(static_cast<ArchiveTool>(index), caption);
    adopt(tool, button);
    button->setToolTip(tool_tip(shown(tool.caption)));
    button->setAccessibleName(shown(tool.caption));
    QObject::connect(button, &QToolButton::pressed, button, [this, &tool] { hand_in(tool.press); });
    QObject::connect(button, &QToolButton::released, button, [this, &tool] { hand_in(tool.release); });
    QObject::connect(button, &QToolButton::clicked, button, [this, &tool] { hand_in(tool.click); });
    new HoverFilter(button, [this, &tool] { hand_in(tool.hover); });
    return button;
}

/// Makes a button that does the same as a menu item.
QToolButton* ArchiveWindowView::make_tool(ArchiveTool tool, const char* caption, const controls::MenuItem& item,
                                          QAction* action) {
    QToolButton* button = tool_button(tool, caption);
    QObject::connect(button, &QToolButton::clicked, action, &QAction::trigger);
    on_sync([button, &item] { button->setEnabled(item.enabled); });
    return button;
}

QWidget* ArchiveWindowView::make_toolbar() {
    auto* bar = new QWidget;
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(make_tool(1, "&Open"));
    layout->addWidget(make_tool(ArchiveTool::extract, "Extr&act...", w_.extract, extract_));
    layout->addWidget(make_tool(ArchiveTool::test, "&Test", w_.test, test_));
    layout->addWidget(make_tool(2, "&Move..."));
    layout->addWidget(make_tool(3, "&Repack"));
    layout->addWidget(make_tool(4, "E&xit"));
    auto* program = new QToolButton;
    program->setFocusPolicy(Qt::TabFocus);
    program->setToolTip(tool_tip(QStringLiteral("Open the selected program")));
    bind(w_.Picture9, static_cast<QWidget*>(program));
    on_sync([this, program, name = Drawn<std::string>()]() mutable {
        name.update(std::string(w_.Picture9.icon.name), [&](const std::string& now) {
            program->setIcon(Signs().of_type(shown(now), QStringLiteral("program.exe")));
        });
    });
    QObject::connect(program, &QToolButton::clicked, program, [this] { hand_in(w_.Picture9.click); });
    layout->addWidget(program);
    layout->addStretch(1);
    auto* name = new QLabel;
    QFont bold = name->font();
    bold.setBold(true);
    name->setFont(bold);
    layout->addWidget(bind(w_.Label4, name));
    on_sync([this, name] { name->setToolTip(tool_tip(shown_name(w_.ArchivePath))); });
    return bar;
}

QWidget* ArchiveWindowView::make_path() {
    auto* path = new QLabel;
    path->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);  // a long one does not widen the window
    new ClickFilter(
        path, [this] { hand_in(w_.Label21.click); }, [this] { hand_in(w_.Label21.double_click); });
    return bind(w_.Label21, path);
}

QWidget* ArchiveWindowView::make_list() {
    auto* panel = new QWidget;
    bind(w_.Picture1, panel);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    table_ = new ArchiveTable(w_);
    adopt(w_.List1, table_);
    table_->selection_changed = [this] { hand_in(w_.List1.change); };
    table_->acted = [this] { hand_in(w_.List1.double_click); };
    table_->scrolled = [this](std::size_t member) { hand_in([this, member] { zip::turn_page_to(w_, member); }); };
    table_->left_out = [this](const std::vector<std::size_t>& rows) {
        hand_in([this, rows] { zip::report_without_file(w_, rows); });
    };
    table_->setContextMenuPolicy(Qt::CustomContextMenu);
    QMenu* menu = make_row_menu();
    QObject::connect(table_, &QWidget::customContextMenuRequested, table_,
                     [this, menu](const QPoint& at) { menu->popup(table_->viewport()->mapToGlobal(at)); });
    new HoverFilter(table_, [this] { hand_in(w_.Picture1.hover); });
    on_sync([this] { table_->sync(); });
    layout->addWidget(table_);
    return panel;
}

/// What is wrong with the selected member, where something is: the line stays while any is to be reported.
QWidget* ArchiveWindowView::make_row_state() {
    auto* state = new QLabel;
    state->setWordWrap(true);
    state->setTextInteractionFlags(Qt::TextSelectableByMouse);
    state->setMinimumHeight(line_height());
    return bind(w_.row_state, state);
}

/// The line below the table: the hint at the left, what is known of the archive at the right.
QWidget* ArchiveWindowView::make_facts() {
    auto* line = new QWidget;
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(line_height() / 3);
    layout->addWidget(bind(w_.Label13, new QLabel), 1);
    auto* bar = new QProgressBar;
    bar->setTextVisible(false);
    layout->addWidget(bind(w_.doing, new QLabel));
    layout->addWidget(bind(w_.bar, w_.bar_done, bar));
    on_sync([this, bar] { bar->setVisible(w_.bar.visible); });
    layout->addWidget(bind_stop(w_.stop, push_button()));
    const std::pair<controls::Label*, const char*> facts[] = {
        {&w_.Label23, "members,"}, {&w_.Label20, "bytes unpacked,"}, {&w_.Label18, "bytes in the archive"}};
    for (const auto& [label, unit] : facts) {
        QLabel* words = plain_label(QString::fromLatin1(unit));
        layout->addWidget(bind(*label, new QLabel));
        layout->addWidget(words);
        on_sync([label = label, words] { words->setVisible(!label->text.empty()); });
    }
    return line;
}

QWidget* ArchiveWindowView::make_panel() {
    auto* panel = new QWidget;
    bind(w_.Picture2, panel);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(line_height() / 2);
    auto* title = new QLabel;
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    layout->addWidget(bind(w_.panel_title, title));
    layout->addWidget(bind(w_.Drive1, new DriveBox));
    DirectoryList* directories = bind(w_.Dir1, new DirectoryList);
    layout->addWidget(directories, 1);
    auto* path = new QLabel;
    path->setWordWrap(true);
    layout->addWidget(bind(w_.Label5, path));
    for (controls::Choice* choice : {&w_.take_all, &w_.take_selected}) {
        layout->addWidget(bind(*choice, new QRadioButton, {&w_.take_all, &w_.take_selected}));
    }
    for (controls::CheckBox* box : {&w_.own_folder, &w_.opens_folder}) layout->addWidget(bind(*box, new QCheckBox));
    for (controls::Button* button : {&w_.Command2, &w_.Command3, &w_.Command4}) {
        layout->addWidget(bind(*button, push_button()));
    }
    auto* escape = new QShortcut(Qt::Key_Escape, &frame());
    QObject::connect(escape, &QShortcut::activated, panel, [this] { hand_in(w_.Command4.click); });
    on_sync([this, escape, directories, drawn = Drawn<bool>()]() mutable {
        drawn.update(w_.Picture2.visible, [&](bool now) {
            escape->setEnabled(now);
            table_->make_narrow(now);
            (now ? static_cast<QWidget*>(directories) : table_)->setFocus();
        });
    });
    return panel;
}

}  // namespace quill::desktop
