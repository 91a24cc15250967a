#include "desktop/viewer/open_pictures_view.h"

#include "desktop/directory_list.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "desktop/viewer/pixels_image.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

namespace quill::desktop {
namespace {

/// Shows the selected picture in its proportions, never enlarged.
class PreviewPane final : public QWidget {
  public:
    explicit PreviewPane(const viewer::ShownPicture& picture) : picture_(picture) {
        const int side = line_height() * 11;
        setMinimumSize(side, side);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        const QImage image = image_of(picture_.pixels);
        if (image.isNull()) return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        QSizeF size = QSizeF(image.size()) / devicePixelRatioF();
        if (size.width() > width() || size.height() > height()) size.scale(QSizeF(this->size()), Qt::KeepAspectRatio);
        QRectF area(QPointF(), size);
        area.moveCenter(QRectF(rect()).center());
        painter.drawImage(area, image);
    }

  private:
    const viewer::ShownPicture& picture_;
};

}  // namespace

OpenPicturesView::OpenPicturesView(viewer::frmOpen& window, EventLoop& events, ViewerDesk& desk)
    : View(window, new QWidget, events), w_(window), desk_(desk) {
    name_controls(window);
    const int space = line_height();
    auto* layout = new QVBoxLayout(&frame());
    layout->setContentsMargins(space / 2, space / 2, space / 2, space / 2);
    layout->setSpacing(space / 2);
    auto* middle = new QHBoxLayout;
    middle->setSpacing(space / 2);
    middle->addWidget(make_directories(), 2);
    files_ = make_files();
    middle->addWidget(files_, 3);
    middle->addWidget(make_preview(), 2);
    layout->addLayout(middle, 1);
    layout->addWidget(make_buttons());
    frame().setFocusProxy(files_);
    auto* leave = new QShortcut(QKeySequence::Cancel, &frame());
    leave->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(leave, &QShortcut::activated, &frame(), [this] { hand_in(w_.Command2.click); });
    if (desk.frame) sub_window_ = desk.frame->add_window(&frame(), {{}, [this] { hand_in(w_.activate); }});
}

OpenPicturesView::~OpenPicturesView() {
    delete sub_window_;
}

QWidget* OpenPicturesView::make_directories() {
    auto* area = new QWidget;
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bind(w_.Drive1, new DriveBox));
    layout->addWidget(bind(w_.Dir1, new DirectoryList), 1);
    return area;
}

QListWidget* OpenPicturesView::make_files() {
    auto* list = new QListWidget;
    adopt(w_.File1, list);
    list->setUniformItemSizes(true);
    list->setTextElideMode(Qt::ElideMiddle);
    QObject::connect(list, &QListWidget::currentRowChanged, list, [this](int row) {
        hand_in([this, row] {
            w_.File1.selected = row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
            controls::run(w_.File1.change);
        });
    });
    QObject::connect(list, &QListWidget::itemActivated, list, [this] { hand_in(w_.File1.double_click); });
    on_sync([this, list, revision = Drawn<std::uint64_t>()]() mutable {
        revision.update(w_.File1.revision(), [&](std::uint64_t) {
            const QSignalBlocker quiet(list);
            list->clear();
            for (const std::string& name : w_.File1.items()) list->addItem(shown_name(name));
        });
        const int row = w_.File1.selected ? static_cast<int>(*w_.File1.selected) : -1;
        const QSignalBlocker quiet(list);
        if (list->currentRow() != row) list->setCurrentRow(row);
    });
    return list;
}

QWidget* OpenPicturesView::make_preview() {
    auto* area = new QWidget;
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* pane = new PreviewPane(w_.preview);
    adopt(w_.preview, pane);
    on_sync([this, pane, drawn = Drawn<std::uint64_t>()]() mutable {
        drawn.update(w_.preview.revision, [&](std::uint64_t) { pane->update(); });
    });
    layout->addWidget(pane, 1);
    QLabel* note = bind(w_.note, text_label());
    note->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    note->setMinimumHeight(line_height() * 2);
    layout->addWidget(note);
    return area;
}

QWidget* OpenPicturesView::make_buttons() {
    auto* area = new QWidget;
    auto* layout = new QHBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* all_kinds = new QCheckBox;
    adopt(w_.all_kinds, all_kinds);
    QObject::connect(all_kinds, &QCheckBox::clicked, all_kinds, [this](bool checked) {
        w_.all_kinds.checked = checked;
        hand_in(w_.all_kinds.click);
    });
    on_sync([this, all_kinds] {
        all_kinds->setText(shown(w_.all_kinds.caption));
        all_kinds->setChecked(w_.all_kinds.checked);
    });
    layout->addWidget(all_kinds);
    auto* hint = text_label();
    hint->setText(QStringLiteral("With no picture selected, the whole directory opens."));
    hint->setEnabled(false);
    layout->addWidget(hint, 1);
    layout->addWidget(bind(w_.Command1, push_button()));
    layout->addWidget(bind(w_.Command2, push_button()));
    return area;
}

void OpenPicturesView::show_or_hide(bool visible) {
    if (sub_window_ == nullptr) return;
    const QFontMetrics metrics = frame().fontMetrics();
    const QSize wanted = told_size().expandedTo(QSize(metrics.averageCharWidth() * 110, metrics.height() * 24));
    if (visible && desk_.frame) {
        const QSize room = desk_.frame->area().size();
        QRect place(QPoint(), wanted.boundedTo(room));
        place.moveCenter(QRect(QPoint(), room).center());
        sub_window_->setGeometry(place);
    }
    frame().setVisible(visible);
    sub_window_->setVisible(visible);
    if (!visible || !desk_.frame) return;
    desk_.frame->area().setActiveSubWindow(sub_window_);
    files_->setFocus();
}

}  // namespace quill::desktop
