#include "desktop/picture_wizard_view.h"

#include "desktop/directory_list.h"
#include "desktop/drop_list.h"
#include "desktop/order_list.h"
#include "desktop/picture_preview.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <initializer_list>

namespace quill::desktop {
namespace {

template <class Layout>
Layout* plain_layout(QWidget* area) {
    auto* layout = new Layout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(line_height() / 2);
    return layout;
}

QColor shown_colour(const controls::Colour& colour) {
    return {colour.red, colour.green, colour.blue};
}

}  // namespace

PictureWizardView::PictureWizardView(htx::HtxWiz& window, EventLoop& events)
    : View(window, new QWidget, events), w_(window) {
    name_controls(window);
    const int space = line_height();
    auto* layout = new QVBoxLayout(&frame());
    layout->setContentsMargins(space, space, space, space);
    layout->setSpacing(space / 2);
    layout->addWidget(bind(w_.Label4, text_label(1.3, true)));
    auto* pages = new QStackedWidget;
    for (QWidget* page : {make_welcome(), make_pictures(), make_letters(), make_titles(), make_order(), make_saving()})
        pages->addWidget(page);
    auto* columns = plain_layout<QHBoxLayout>(new QWidget);
    columns->setSpacing(space);
    columns->addWidget(make_directories(), 2);
    columns->addWidget(pages, 3);
    columns->addWidget(make_preview(), 2);
    layout->addWidget(columns->parentWidget(), 1);
    layout->addWidget(make_progress());
    layout->addWidget(make_buttons());
    on_sync([this, pages, drawn = Drawn<htx::WizardStep>()]() mutable {
        drawn.update(w_.step, [&](htx::WizardStep step) {
            pages->setCurrentIndex(static_cast<int>(step));
            focus_first();
        });
    });
    auto* leave = new QShortcut(QKeySequence::Cancel, &frame());
    QObject::connect(leave, &QShortcut::activated, &frame(), [this] {
        if (w_.stop.visible) return hand_in(w_.stop.click);
        if (w_.step == htx::WizardStep::welcome) hand_in(w_.close);
    });
}

QWidget* PictureWizardView::make_welcome() {
    auto* page = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(page);
    layout->addStretch(1);
    layout->addWidget(bind(w_.Label1, text_label(1.5, true)));
    layout->addWidget(bind(w_.Label2, text_label()));
    layout->addStretch(2);
    layout->addWidget(bind(w_.Command1, push_button()), 0, Qt::AlignRight);
    return page;
}

QWidget* PictureWizardView::make_directories() {
    auto* area = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(area);
    layout->addWidget(bind(w_.Drive1, new DriveBox));
    layout->addWidget(bind(w_.Dir1, new DirectoryList), 2);
    auto* files = bind_list(w_.File1, new QListWidget);
    files->setSelectionMode(QAbstractItemView::ExtendedSelection);
    layout->addWidget(files, 3);
    layout->addWidget(bind(w_.other_kinds, new QCheckBox));
    on_sync([this, area] { area->setVisible(w_.Dir1.visible); });
    return area;
}

QWidget* PictureWizardView::make_pictures() {
    auto* page = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(page);
    auto* list = new DropList;
    list->dropped = [this](const std::vector<std::string>& paths) { hand_in([this, paths] { w_.add_files(paths); }); };
    layout->addWidget(bind_list(w_.List2, list), 1);
    layout->addWidget(bind(w_.chosen_count, plain_label()));
    for (controls::Button* button : {&w_.add, &w_.add_all, &w_.reset}) layout->addWidget(bind(*button, push_button()));
    return page;
}

QWidget* PictureWizardView::make_sample() {
    auto* sample = new QLineEdit;
    bind(w_.Text1, sample);
    sample->setAlignment(Qt::AlignCenter);
    sample->setMinimumHeight(line_height() * 5);
    on_sync([this, sample, drawn = Drawn<htx::PageStyle>()]() mutable {
        drawn.update(w_.style, [&](const htx::PageStyle& style) {
            QFont font = sample->font();
            font.setPointSize(style.size);
            font.setBold(style.bold);
            font.setItalic(style.italic);
            sample->setFont(font);
            QPalette colours = sample->palette();
            colours.setColor(QPalette::Base, shown_colour(style.background));
            colours.setColor(QPalette::Text, shown_colour(style.foreground));
            sample->setPalette(colours);
        });
    });
    return sample;
}

QWidget* PictureWizardView::make_letters() {
    auto* page = new QWidget;
    auto* layout = plain_layout<QGridLayout>(page);
    layout->addWidget(make_sample(), 0, 0, 1, 2);
    layout->addWidget(bind(w_.Label12, plain_label()), 1, 0, 1, 2, Qt::AlignHCenter);
    controls::Button* const buttons[] = {&w_.larger, &w_.smaller, &w_.bold, &w_.italic, &w_.background, &w_.foreground};
    int place = 0;
    for (controls::Button* button : buttons) {
        layout->addWidget(bind(*button, push_button()), 2 + place / 2, place % 2);
        ++place;
    }
    layout->addWidget(bind(w_.reset_letters, push_button()), 5, 0, 1, 2);
    layout->setRowStretch(6, 1);
    return page;
}

void PictureWizardView::add_field(QBoxLayout& layout, controls::Label& heading, QWidget* field) {
    QLabel* label = bind(heading, plain_label());
    label->setBuddy(field);
    layout.addWidget(label);
    layout.addWidget(field);
}

QWidget* PictureWizardView::make_titles() {
    auto* page = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(page);
    layout->addWidget(bind(w_.Label6, plain_label()));
    auto* title = new QLineEdit;
    bind(w_.Text2, title);
    QObject::connect(title, &QLineEdit::returnPressed, title, [this] {
        hand_in(w_.next_picture.visible && w_.next_picture.enabled ? w_.next_picture.click : w_.Command4.click);
    });
    on_sync([this, title, drawn = Drawn<std::string>()]() mutable {
        drawn.update(w_.Label8.text + w_.shown_picture, [&](const std::string&) {
            title->setFocus();
            title->selectAll();
        });
    });
    add_field(*layout, w_.title_heading, title);
    auto* words = new QPlainTextEdit;
    bind(w_.Text3, words);
    words->setTabChangesFocus(true);
    words->setMaximumHeight(line_height() * 8);
    add_field(*layout, w_.caption_heading, words);
    const std::vector<controls::Choice*> places = w_.Option1.all();
    for (controls::Choice* place : places) layout->addWidget(bind(*place, new QRadioButton, places));
    for (controls::Button* button : {&w_.next_picture, &w_.why_titles, &w_.why_small})
        layout->addWidget(bind(*button, push_button()));
    layout->addStretch(1);
    return page;
}

QWidget* PictureWizardView::make_order() {
    auto* page = new QWidget;
    auto* layout = plain_layout<QGridLayout>(page);
    auto* original = new OrderList;
    auto* ordered = new OrderList;
    original->setSelectionMode(QAbstractItemView::ExtendedSelection);
    ordered->dropped = [this](const std::vector<std::size_t>& rows) {
        hand_in([this, rows] { w_.put_in_order(rows); });
    };
    ordered->moved = [this](std::size_t from, std::size_t to) {
        hand_in([this, from, to] { w_.move_in_order(from, to); });
    };
    layout->addWidget(bind(w_.original_order, plain_label()), 0, 0);
    layout->addWidget(bind(w_.new_order, plain_label()), 0, 1);
    layout->addWidget(bind_list(w_.List3, original), 1, 0);
    layout->addWidget(bind_list(w_.List4, ordered), 1, 1);
    layout->addWidget(bind(w_.put, push_button()), 2, 0);
    layout->addWidget(bind(w_.clear_order, push_button()), 2, 1);
    layout->addWidget(bind(w_.how_to_order, push_button()), 3, 0);
    layout->addWidget(bind(w_.about_thumbnails, push_button()), 3, 1);
    layout->addWidget(bind(w_.Check1, new QCheckBox), 4, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    return page;
}

QWidget* PictureWizardView::make_saving() {
    auto* page = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(page);
    auto* name = new QLineEdit;
    bind(w_.Text5, name);
    QObject::connect(name, &QLineEdit::returnPressed, name, [this] {
        if (w_.Command4.enabled) hand_in(w_.Command4.click);
    });
    add_field(*layout, w_.Label11, name);
    auto* directory = new QLineEdit;
    add_field(*layout, w_.directory_heading, bind(w_.Text6, directory));
    auto* password = new QLineEdit;
    bind(w_.Text4, password)->setEchoMode(QLineEdit::Password);
    add_field(*layout, w_.password_heading, password);
    const std::vector<controls::Choice*> kinds = w_.Option2.all();
    for (controls::Choice* kind : kinds) layout->addWidget(bind(*kind, new QRadioButton, kinds));
    layout->addWidget(bind(w_.index_page, new QCheckBox));
    layout->addStretch(1);
    return page;
}

QWidget* PictureWizardView::make_preview() {
    auto* area = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(area);
    auto* preview = new PicturePreview;
    preview->use(w_.context.platform.pictures());
    adopt(w_.Image1, area);
    layout->addWidget(preview, 1);
    layout->addStretch(0);
    on_sync([this, area, preview, drawn = Drawn<std::string>()]() mutable {
        area->setVisible(w_.Image1.visible);
        drawn.update(w_.shown_picture, [&](const std::string& path) { preview->show_file(path); });
    });
    return area;
}

QWidget* PictureWizardView::make_progress() {
    auto* area = new QWidget;
    auto* layout = plain_layout<QHBoxLayout>(area);
    layout->addWidget(bind(w_.doing, plain_label()));
    layout->addWidget(bind(w_.bar, w_.bar_done, new QProgressBar), 1);
    QAbstractButton* stop = bind_stop(w_.stop, push_button());
    // Thumbnails are decoded between events, so that nothing else draws the button's effect.
    QObject::connect(stop, &QAbstractButton::clicked, stop, [this] {
        if (events().idle()) hand_in([] {});
    });
    layout->addWidget(stop);
    on_sync([this, area] { area->setVisible(w_.stop.visible); });
    return area;
}

QWidget* PictureWizardView::make_buttons() {
    auto* area = new QWidget;
    auto* layout = plain_layout<QHBoxLayout>(area);
    layout->addWidget(bind(w_.Command7, push_button()));
    layout->addStretch(1);
    layout->addWidget(bind(w_.Command4, push_button()));
    layout->addWidget(bind(w_.Command5, push_button()));
    return area;
}

QListWidget* PictureWizardView::bind_list(controls::ListBox& list, QListWidget* widget) {
    adopt(list, widget);
    widget->setTextElideMode(Qt::ElideMiddle);
    QObject::connect(widget, &QListWidget::itemSelectionChanged, widget, [this, &list, widget] {
        list.selected_rows.clear();
        for (int row = 0; row < widget->count(); ++row) {
            if (widget->item(row)->isSelected()) list.selected_rows.push_back(static_cast<std::size_t>(row));
        }
        const int row = widget->currentRow();
        list.selected = row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
        hand_in([&list] { controls::run(list.change); });
    });
    QObject::connect(widget, &QListWidget::itemActivated, widget, [this, &list] { hand_in(list.double_click); });
    on_sync([&list, widget, revision = Drawn<std::uint64_t>()]() mutable {
        const QSignalBlocker quiet(widget);
        revision.update(list.revision(), [&](std::uint64_t) {
            widget->clear();
            for (const std::string& item : list.items()) widget->addItem(shown_name(item));
            if (list.selected) widget->setCurrentRow(static_cast<int>(*list.selected));
        });
        widget->setEnabled(list.enabled);
    });
    return widget;
}

void PictureWizardView::focus_first() {
    const char* const first[] = {"Command1", "File1", "larger", "Text2", "List3", "Text5"};
    auto* widget = frame().findChild<QWidget*>(QString::fromLatin1(first[static_cast<int>(w_.step)]));
    if (widget != nullptr) widget->setFocus();
}

void PictureWizardView::on_shown() {
    focus_first();
}

}  // namespace quill::desktop
