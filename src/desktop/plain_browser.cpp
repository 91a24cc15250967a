#include "desktop/plain_browser.h"

#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "files/mapped_file.h"
#include "htx/book/book_check.h"
#include "htx/html/page_text.h"

#include <QImage>
#include <QMouseEvent>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextImageFormat>

#include <algorithm>
#include <utility>
#include <vector>

namespace quill::desktop {
namespace {

constexpr auto scheme = "book";

QUrl url_of(const std::string& page, const std::string& fragment) {
    QUrl url;
    url.setScheme(QLatin1String(scheme));
    url.setPath(QLatin1Char('/') + QString::fromStdString(page));
    if (!fragment.empty()) url.setFragment(QString::fromStdString(fragment));
    return url;
}

QVariant nothing(int type) {
    if (type != QTextDocument::ImageResource) return QByteArray();
    QImage empty(1, 1, QImage::Format_ARGB32);
    empty.fill(Qt::transparent);
    return empty;
}

/// A picture in a page: its position and format.
using PlacedPicture = std::pair<int, QTextImageFormat>;

std::vector<PlacedPicture> pictures_in(const QTextBlock& block) {
    std::vector<PlacedPicture> pictures;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        if (!fragment.charFormat().isImageFormat()) continue;
        for (int i = 0; i < fragment.length(); ++i) {
            pictures.emplace_back(fragment.position() + i, fragment.charFormat().toImageFormat());
        }
    }
    return pictures;
}

/// Returns the format of a picture of `pixels` at `zoom` percent. Keeps the size that the page states.
QTextImageFormat zoomed_picture(QTextImageFormat format, QSize pixels, int room, int zoom) {
    constexpr int stated = QTextFormat::UserProperty;
    if (!format.hasProperty(stated)) format.setProperty(stated, QSizeF(format.width(), format.height()));
    QSizeF size = format.property(stated).toSizeF();
    const double height_per_width = pixels.width() > 0 ? double(pixels.height()) / pixels.width() : 1;
    if (size.width() <= 0) {
        const double natural = std::min(pixels.width(), room);
        size.setWidth(size.height() > 0 ? size.height() / height_per_width : natural);
    }
    if (size.height() <= 0) size.setHeight(size.width() * height_per_width);
    format.setWidth(size.width() * zoom / 100);
    format.setHeight(size.height() * zoom / 100);
    return format;
}

QVariant text_of(const std::string& path) {
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return QString();
    return QString::fromStdString(htx::decode_page(file->bytes().substr(0, htx::most_page_bytes)));
}

}  // namespace

PlainBrowser::PlainBrowser(const htx::Form7& book)
    : book_(book), pictures_(book.context.platform.pictures()), usual_points_(font().pointSizeF()) {
    pictures_.arrived = [this](const auto& pictures) { show_pictures(pictures); };
    set_paper();
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    document()->setDocumentMargin(line_height());
    setFrameShape(QFrame::NoFrame);
    connect(this, &QTextBrowser::sourceChanged, this, [this] {
        size_pictures();  // some may be known from another page
        if (arrived) arrived(page_, documentTitle().toStdString());
    });
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) {
        const bool is_in_book = link.scheme() == QLatin1String(scheme);
        const QString address = is_in_book ? link.toString(QUrl::FullyEncoded | QUrl::RemoveScheme) : link.toString();
        const std::string text = address.toStdString();
        if (clicked)
            clicked(page_, is_in_book ? text.substr(std::min(text.find_first_not_of('/'), text.size())) : text);
    });
}

/// Sets the colors that pages are written for, black on white, whatever those of the desktop are: many pages name only
/// some of theirs.
void PlainBrowser::set_paper() {
    QPalette paper = palette();
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::Text, Qt::black);
    setPalette(paper);
    document()->setDefaultStyleSheet(QStringLiteral("a { color: #0000ee }"));
}

void PlainBrowser::navigate(const std::string& page, const std::string& fragment) {
    setSource(url_of(page, fragment), QTextDocument::HtmlResource);
}

bool PlainBrowser::find(const std::string& text, Direction direction) {
    return QTextBrowser::find(
        shown(text), direction == Direction::forward ? QTextDocument::FindFlags() : QTextDocument::FindBackward);
}

void PlainBrowser::find_place(const std::string& text, std::size_t number) {
    moveCursor(QTextCursor::Start);
    while (find(text, Direction::forward) && number-- != 0) {
    }
}

void PlainBrowser::print() {
    QPrinter printer;
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted) QTextBrowser::print(&printer);
}

std::string PlainBrowser::file_of(const QUrl& name) const {
    if (!name.isRelative() && name.scheme() != QLatin1String(scheme)) return {};
    const std::string address = name.toString(QUrl::FullyEncoded | QUrl::RemoveScheme).toStdString();
    if (name.isRelative()) return book_.path_of(htx::resolve(page_, address));
    return book_.path_of(htx::resolve({}, address.substr(std::min(address.find_first_not_of('/'), address.size()))));
}

QVariant PlainBrowser::loadResource(int type, const QUrl& name) {
    const std::string path = file_of(name);
    if (type == QTextDocument::HtmlResource) {
        page_ = name.path(QUrl::FullyDecoded).mid(1).toStdString();
        pictures_.drop_all();
    }
    if (path.empty()) return nothing(type);
    if (type != QTextDocument::ImageResource) return text_of(path);
    ask_for(name, path);
    return nothing(type);
}

/// Returns the width that a picture takes at most without zoom.
int PlainBrowser::room() const {
    return std::max(200, viewport()->width() - line_height() * 3);
}

void PlainBrowser::ask_for(const QUrl& name, const std::string& path) {
    constexpr int most_height = 10'000;
    pictures_.ask(name, path, {room() * std::max(zoom_, 100) / 100, most_height});
}

/// Requests the page's pictures with as many pixels as the zoom needs.
void PlainBrowser::ask_again() {
    pictures_.drop_all();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (const auto& [at, format] : pictures_in(block)) {
            const QUrl name = document()->baseUrl().resolved(QUrl(format.name()));
            const std::string path = file_of(name);
            if (!path.empty()) ask_for(name, path);
        }
    }
}

/// Sizes the page's pictures by the zoom: from the size that the page gives them, or from their own as far as there is
/// room.
void PlainBrowser::size_pictures() {
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (const auto& [at, format] : pictures_in(block)) {
            const QVariant resource = document()->resource(QTextDocument::ImageResource, QUrl(format.name()));
            cursor.setPosition(at);
            cursor.setPosition(at + 1, QTextCursor::KeepAnchor);
            cursor.setCharFormat(zoomed_picture(format, resource.value<QImage>().size(), room(), zoom_));
        }
    }
    cursor.endEditBlock();
}

/// Puts pictures into their places, which then take the room that they need. Keeps the line at the top of the window in
/// place.
void PlainBrowser::show_pictures(const std::vector<PagePictures::Arrived>& pictures) {
    QScrollBar* const bar = verticalScrollBar();
    const bool is_at_top = bar->value() == bar->minimum();
    const QTextCursor top = cursorForPosition({0, 0});
    const int before = cursorRect(top).top();
    for (const auto& [name, image] : pictures) document()->addResource(QTextDocument::ImageResource, name, image);
    size_pictures();
    document()->markContentsDirty(0, document()->characterCount());
    if (!is_at_top) bar->setValue(bar->value() + cursorRect(top).top() - before);
}

void PlainBrowser::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::BackButton) go_back();
    if (event->button() == Qt::ForwardButton) go_forward();
    QTextBrowser::mouseReleaseEvent(event);
}

void PlainBrowser::set_zoom(int percent) {
    QFont letters = font();
    letters.setPointSizeF(usual_points_ * percent / 100);
    const std::size_t top = place();
    setFont(letters);
    if (std::exchange(zoom_, percent) != percent) {
        ask_again();
        size_pictures();
    }
    go_to_place(top);
}

std::size_t PlainBrowser::place() const {
    return static_cast<std::size_t>(cursorForPosition({0, 0}).position());
}

void PlainBrowser::go_to_place(std::size_t place) {
    const auto end = static_cast<std::size_t>(std::max(0, document()->characterCount() - 1));
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(std::min(place, end)));
    verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect(cursor).top());
}

void PlainBrowser::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) return QTextBrowser::wheelEvent(event);
    constexpr int step = 120;
    wheel_ += event->angleDelta().y();
    const int steps = wheel_ / step;
    wheel_ -= steps * step;
    event->accept();
    if (steps != 0 && zoomed) zoomed(steps);
}

void PlainBrowser::keyPressEvent(QKeyEvent* event) {
    const bool space = event->key() == Qt::Key_Space, shift = event->modifiers().testFlag(Qt::ShiftModifier);
    const bool forward = event->key() == Qt::Key_PageDown || (space && !shift);
    const bool backward = event->key() == Qt::Key_PageUp || (space && shift);
    QScrollBar* const bar = verticalScrollBar();
    if (turned && !event->isAutoRepeat() &&
        ((forward && bar->value() == bar->maximum()) || (backward && bar->value() == bar->minimum()))) {
        return turned(forward);
    }
    if (!space) return QTextBrowser::keyPressEvent(event);
    bar->triggerAction(forward ? QAbstractSlider::SliderPageStepAdd : QAbstractSlider::SliderPageStepSub);
}

}  // namespace quill::desktop
