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
    const auto add_bar = [&](int row, const char* what, controls::Picture& whole, controls::Picture& part,
                             controls::Label& percent) {
        auto* bar = new QProgressBar;
        bar->setTextVisible(false);
        bar->setMinimumWidth(space * 18);
        QLabel* number = plain_label();
        number->setMinimumWidth(frame().fontMetrics().horizontalAdvance(QStringLiteral("100% ")));
        layout->addWidget(plain_label(QString::fromLatin1(what)), row, 0);
        layout->addWidget(bind(whole, part, bar), row, 1);
        layout->addWidget(bind(percent, number), row, 2);
    };
    add_bar(0, "All files", window.Picture5, window.Picture6, window.Label2);
    add_bar(1, "This file", window.Picture3, window.Picture2, window.Label5);
}

}  // namespace quill::desktop
