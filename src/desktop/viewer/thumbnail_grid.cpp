#include "desktop/viewer/thumbnail_grid.h"

#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "desktop/viewer/pixels_image.h"
#include "files/path.h"
#include "viewer/picture_names.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace quill::desktop {
namespace {

constexpr int picture_side = 92;  // logical pixels of a thumbnail's longest side in its cell
constexpr int small_thumbnail = 128, large_thumbnail = 256;

int padding() {
    return std::max(3, line_height() / 4);
}

QSize cell_size() {
    return {picture_side + 2 * padding() + 4, picture_side + line_height() + 3 * padding()};
}

/// Returns the name that a cell shows: for a stored thumbnail the name of its picture.
QString name_of(const std::string& path) {
    const std::string name = files::name_of(path);
    return shown_name(viewer::is_album_thumbnail(name) ? viewer::picture_of_album_thumbnail(name) : name);
}

}  // namespace

bool ThumbnailModel::refresh() {
    const controls::ListBox& list = viewer::source_list(w_);
    if (list_ == &list && revision_ == list.revision()) return false;
    beginResetModel();
    list_ = &list;
    revision_ = list.revision();
    rows_ = static_cast<int>(list.count());
    endResetModel();
    return true;
}

int ThumbnailModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

const std::string& ThumbnailModel::path(int row) const {
    static const std::string none;
    const bool there = list_ != nullptr && row >= 0 && static_cast<std::size_t>(row) < list_->count();
    return there ? list_->items()[static_cast<std::size_t>(row)] : none;
}

QVariant ThumbnailModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::DisplayRole) return name_of(path(index.row()));
    if (role == Qt::ToolTipRole) {
        const platform::Picture* const picture = w_.thumbnails.find(path(index.row()));
        QString text = shown_name(path(index.row()));
        if (picture != nullptr && !picture->reason.empty()) text += QLatin1Char('\n') + shown_message(picture->reason);
        return tool_tip(text);
    }
    return {};
}

void ThumbnailModel::announce(const std::string& path, int first, int last) {
    for (int row = std::max(0, first); row <= std::min(last, rows_ - 1); ++row) {
        if (this->path(row) == path) Q_EMIT dataChanged(index(row), index(row));
    }
}

QSize ThumbnailDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return cell_size();
}

void ThumbnailDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem back = option;
    back.text.clear();
    QApplication::style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &back, painter, option.widget);
    const QRect cell = option.rect.adjusted(padding(), padding(), -padding(), -padding());
    const QRect picture_place = cell.adjusted(0, 0, 0, -line_height() - padding());
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    const QFontMetrics metrics = option.fontMetrics;
    painter->drawText(QRect(cell.left(), cell.bottom() - line_height(), cell.width(), line_height() + 1),
                      Qt::AlignCenter | Qt::TextSingleLine,
                      metrics.elidedText(index.data().toString(), Qt::ElideMiddle, cell.width()));
    const platform::Picture* const picture = w_.thumbnails.find(model_.path(index.row()));
    if (picture == nullptr) {
        painter->setPen(option.palette.color(QPalette::PlaceholderText));
        painter->drawRect(picture_place.adjusted(8, 8, -8, -8));
    } else if (const QImage image = image_of(picture->pixels); image.isNull()) {
        painter->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::PlaceholderText));
        painter->drawText(picture_place, Qt::AlignCenter | Qt::TextWordWrap, QStringLiteral("Can't be\nshown"));
    } else {
        const double ratio = painter->device()->devicePixelRatioF();
        const QSizeF whole = QSizeF(image.size()) / ratio;
        const QSizeF size = whole.width() <= picture_place.width() && whole.height() <= picture_place.height()
                                ? whole
                                : whole.scaled(picture_place.size(), Qt::KeepAspectRatio);
        QRectF area(QPointF(), size);
        area.moveCenter(QRectF(picture_place).center());
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(area, image);
    }
    painter->restore();
    if (!option.state.testFlag(QStyle::State_HasFocus)) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(option);
    focus.rect = option.rect.adjusted(1, 1, -1, -1);
    QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
}

ThumbnailGrid::ThumbnailGrid(viewer::tittwo& column) : w_(column), model_(column), delegate_(column, model_) {
    setModel(&model_);
    setItemDelegate(&delegate_);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setResizeMode(QListView::Adjust);
    setLayoutMode(QListView::SinglePass);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setGridSize(cell_size());
    verticalScrollBar()->setObjectName(QStringLiteral("VScroll1"));
    setMinimumWidth(cell_size().width() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth() + 2);
    w_.thumbnails.changed = [this](const std::string& path) {
        const Rows rows = in_sight();
        model_.announce(path, rows.first, rows.first + rows.count);
    };
    QObject::connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { look(); });
    QObject::connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& now) {
        if (now.isValid()) w_.current = static_cast<std::size_t>(now.row());
    });
}

ThumbnailGrid::Rows ThumbnailGrid::in_sight() const {
    const QSize cell = gridSize();
    const int columns = std::max(1, viewport()->width() / cell.width());
    const int top = verticalScrollBar()->value() / cell.height();
    const int lines = viewport()->height() / cell.height() + 2;
    const int first = std::min(top * columns, model_.rowCount());
    return {first, std::min(lines * columns, model_.rowCount() - first)};
}

void ThumbnailGrid::look() {
    const Rows rows = in_sight();
    top_ = static_cast<std::size_t>(rows.first);
    if (looked_at) looked_at(static_cast<std::size_t>(rows.first), static_cast<std::size_t>(rows.count));
}

void ThumbnailGrid::sync() {
    const int side = devicePixelRatioF() > 1.2 ? large_thumbnail : small_thumbnail;
    w_.thumbnails.set_side(side);
    if (model_.refresh()) {
        scrollToTop();
        top_.reset();
        QMetaObject::invokeMethod(
            this, [this] { look(); }, Qt::QueuedConnection);
    }
    if (w_.current && currentIndex().row() != static_cast<int>(*w_.current)) {
        setCurrentIndex(model_.index(static_cast<int>(*w_.current)));
    }
    viewport()->update();
}

void ThumbnailGrid::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool second = std::exchange(double_clicked_, false);
    if (event->button() != Qt::LeftButton || second || !index.isValid() || index != currentIndex()) return;
    if (opened) opened(static_cast<std::size_t>(index.row()));
}

/// Does nothing: the first click has opened the picture.
void ThumbnailGrid::mouseDoubleClickEvent(QMouseEvent*) {
    double_clicked_ = true;
}

void ThumbnailGrid::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool erase = event->key() == Qt::Key_Delete;
    if ((!enter && !erase) || !currentIndex().isValid()) {
        QListView::keyPressEvent(event);
        return;
    }
    const auto row = static_cast<std::size_t>(currentIndex().row());
    if (enter && opened) opened(row);
    if (erase && delete_wanted) delete_wanted(row);
}

void ThumbnailGrid::contextMenuEvent(QContextMenuEvent* event) {
    const bool by_key = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = by_key ? currentIndex() : indexAt(event->pos());
    if (!index.isValid() || !menu_wanted) return;
    const QPoint at = by_key ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos();
    menu_wanted(static_cast<std::size_t>(index.row()), at);
}

void ThumbnailGrid::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    QMetaObject::invokeMethod(
        this, [this] { look(); }, Qt::QueuedConnection);
}

void ThumbnailGrid::showEvent(QShowEvent* event) {
    QListView::showEvent(event);
    look();
}

}  // namespace quill::desktop
