#include "desktop/drop_list.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace quill::desktop {

std::vector<std::string> dragged_files(const QMimeData* data) {
    std::vector<std::string> paths;
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            paths.push_back(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString());
    }
    return paths;
}

DropList::DropList() {
    setAcceptDrops(true);
    setTextElideMode(Qt::ElideMiddle);
    setAlternatingRowColors(true);
}

void DropList::dragEnterEvent(QDragEnterEvent* event) {
    if (!dragged_files(event->mimeData()).empty()) event->acceptProposedAction();
}

void DropList::dragMoveEvent(QDragMoveEvent* event) {
    event->acceptProposedAction();
}

void DropList::dropEvent(QDropEvent* event) {
    const std::vector<std::string> paths = dragged_files(event->mimeData());
    event->acceptProposedAction();
    if (dropped && !paths.empty()) dropped(paths);
}

}  // namespace quill::desktop
