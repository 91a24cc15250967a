#include "desktop/about_view.h"

#include "desktop/pieces.h"
#include "desktop/signs.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace quill::desktop {

AboutView::AboutView(shell::AboutBox& window, EventLoop& events) : View(window, new QWidget, events), w_(window) {
    name_controls(window);
    const int space = line_height();
    auto* layout = new QVBoxLayout(&frame());
    layout->setContentsMargins(space * 3 / 2, space * 3 / 2, space * 3 / 2, space);
    layout->setSpacing(space);

    auto* top = new QHBoxLayout;
    top->setSpacing(space * 3 / 2);
    auto* picture = plain_label();
    picture->setPixmap(program_icon().pixmap(QSize(space, space) * 4, frame().devicePixelRatioF()));
    top->addWidget(picture, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(space / 2);
    texts->addWidget(bind(w_.Label1, text_label(1.6, true)));
    texts->addWidget(bind(w_.Label2, text_label()));
    QLabel* what = bind(w_.Label3, text_label());
    what->setMinimumWidth(what->fontMetrics().averageCharWidth() * 48);
    texts->addWidget(what);
    texts->addWidget(bind(w_.Label4, text_label()));
    top->addLayout(texts, 1);
    layout->addLayout(top, 1);

    auto* close = new QPushButton;
    close->setDefault(true);
    layout->addWidget(bind(w_.Command1, close), 0, Qt::AlignRight);
    for (const QKeySequence& keys : {QKeySequence(QKeySequence::Cancel), QKeySequence(Qt::Key_Return)}) {
        auto* leave = new QShortcut(keys, &frame());
        QObject::connect(leave, &QShortcut::activated, &frame(), [this] { hand_in(w_.Command1.click); });
    }
    close->setFocus();
}

}  // namespace quill::desktop
