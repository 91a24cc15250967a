#include "desktop/progress_view.h"

#include "desktop/pieces.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>

namespace quill::desktop {

ProgressView::ProgressView(viewer::SavPic& window, EventLoop& events) : View(window, new QWidget, events) {
    name_controls(window);
    const int space = frame().fontMetrics().height();
    auto* layout = new QGridLayout(&frame());
    layout->setContentsMargins(space, space, space, space);
    layout->setSpacing(space / 2);
    layout->addWidget(bind(window.doing, text_label()), 0, 0, 1, 3);
    const auto add_bar = [&](int row, const char* what, controls::Picture& whole, controls::Picture& part,
                             controls::Label& percent) {
        auto* bar = new QProgressBar;
        bar->setTextVisible(false);
        bar->setMinimumWidth(space * 18);
        QLabel* number = plain_label();
        number->setMinimumWidth(frame().fontMetrics().horizontalAdvance(QStringLiteral("100% ")));
        QLabel* heading = plain_label(QString::fromLatin1(what));
        layout->addWidget(heading, row, 0);
        layout->addWidget(bind(whole, part, bar), row, 1);
        layout->addWidget(bind(percent, number), row, 2);
        on_sync([&whole, heading, bar, number] {
            for (QWidget* widget : std::initializer_list<QWidget*>{heading, bar, number}) {
                widget->setVisible(whole.visible);
            }
        });
    };
    add_bar(1, "All files", window.Picture5, window.Picture6, window.Label2);
    add_bar(2, "This file", window.Picture3, window.Picture2, window.Label5);
    layout->addWidget(bind_stop(window.stop, push_button()), 3, 0, 1, 3, Qt::AlignRight);
}

}  // namespace quill::desktop
