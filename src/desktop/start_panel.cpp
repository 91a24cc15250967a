#include "desktop/main_window_view.h"
#include "desktop/pieces.h"
#include "desktop/star_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

/// The start panel: the stars, the name of the program, the options.
namespace quill::desktop {
namespace {

const QColor title_colour(0xf4, 0xf7, 0xff);
const QColor quiet_colour(0xb4, 0xbf, 0xdb);

/// Makes a label on the dark panel, `growth` times as large as usual text.
QLabel* light_label(const QColor& colour, double growth, bool bold = false) {
    QLabel* label = text_label(growth, bold);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, colour);
    label->setPalette(palette);
    return label;
}

/// Makes an empty area of the panel through which the stars are visible.
QWidget* empty_area() {
    auto* area = new QWidget;
    area->setProperty("empty", true);
    area->setMouseTracking(true);
    return area;
}

}  // namespace

QWidget* MainWindowView::make_start_panel() {
    stars_ = new StarPanel(w_.stars);
    adopt(w_.Picture1, stars_);
    stars_->reached = [this] { hand_in(w_.Picture1.hover); };
    if (!wants_still_pictures(*stars_)) bind(w_.Timer2, stars_, StarPanel::step_time);
    on_sync([this, last = std::array<shell::Star, shell::StarField::count>()]() mutable {
        const auto& stars = w_.stars.stars();
        const bool same = std::equal(stars.begin(), stars.end(), last.begin(),
                                     [](const auto& a, const auto& b) { return a.x == b.x && a.y == b.y; });
        if (same) return;
        last = stars;
        stars_->step();
    });

    const int space = line_height();
    auto* layout = new QVBoxLayout(stars_);
    layout->setContentsMargins(space * 3, space * 3 / 2, space * 3, space * 3 / 2);
    layout->setSpacing(space / 4);
    layout->addWidget(make_title());
    layout->addStretch(2);
    QLabel* heading = light_label(quiet_colour, 1.1);
    layout->addWidget(bind(w_.Label1, heading), 0, Qt::AlignLeft);
    w_.apt.for_each([&](int index, controls::Label&) { layout->addWidget(make_option(index)); });
    layout->addStretch(3);
    layout->addWidget(make_progress());
    return stars_;
}

QWidget* MainWindowView::make_title() {
    QWidget* title = empty_area();
    auto* layout = new QVBoxLayout(title);
    layout->setContentsMargins(0, 0, 0, 0);
    QLabel* name = light_label(title_colour, 2.3, true);
    name->setWordWrap(false);
    layout->addWidget(bind(w_.Label8, name), 0, Qt::AlignLeft);
    w_.Label15.for_each(
        [&](int, controls::Label& label) { layout->addWidget(bind(label, light_label(quiet_colour, 1.0)), 0); });
    return title;
}

QWidget* MainWindowView::make_option(int index) {
    QWidget* row = empty_area();
    adopt(w_.opt(index), row);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* option = new OptionButton(OptionButton::Look::on_stars);
    option->set_mark(QString::number(index));
    bind(w_.apt(index), option);
    option->left = [this] { hand_in(w_.Picture1.hover); };
    options_.push_back(option);
    layout->addWidget(option, 0);
    layout->addStretch(1);
    on_sync([this, row, index] { row->setVisible(w_.apt(index).visible || w_.opt(index).visible); });
    return row;
}

QWidget* MainWindowView::make_progress() {
    QWidget* area = empty_area();
    QSizePolicy policy = area->sizePolicy();
    policy.setRetainSizeWhenHidden(true);  // the options keep their places when it appears and disappears
    area->setSizePolicy(policy);
    bind(w_.Picture5, area);
    auto* layout = new QGridLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(line_height());
    auto* bar = new QProgressBar;
    bar->setTextVisible(false);
    bar->setMinimumHeight(bar->fontMetrics().height());
    bind(w_.Picture5, w_.Picture6, bar);
    layout->addWidget(bind(w_.doing, light_label(title_colour, 1.0)), 0, 0, 1, 2);
    layout->addWidget(bar, 1, 0);
    layout->addWidget(bind_stop(w_.stop, push_button()), 1, 1);
    layout->setColumnStretch(0, 1);
    return area;
}

}  // namespace quill::desktop
