#include "desktop/guide_window.h"

#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "files/path.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QMainWindow>
#include <QPointer>
#include <QShortcut>
#include <QTextBrowser>
#include <QToolBar>

namespace quill::desktop {
namespace {

/// A browser that stays below one folder and fits pictures to its width.
class GuideBrowser final : public QTextBrowser {
  public:
    explicit GuideBrowser(const QString& folder) : folder_(folder) {
        setOpenLinks(false);
        setAccessibleName(QStringLiteral("User guide"));
        const int space = line_height();
        document()->setDocumentMargin(space * 3 / 2);
        setFrameShape(QFrame::NoFrame);
        connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) { follow(link); });
    }

  protected:
    QVariant loadResource(int type, const QUrl& name) override {
        const QUrl url = source().resolved(name);
        const QString file = QDir::cleanPath(url.toLocalFile());
        if (!url.isLocalFile() || !file.startsWith(folder_ + QLatin1Char('/'))) return {};
        if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, url);
        QImage picture(file);
        const int room = std::max(200, viewport()->width() - line_height() * 10);
        return picture.width() > room ? picture.scaledToWidth(room, Qt::SmoothTransformation) : picture;
    }

  private:
    void follow(const QUrl& link) {
        const QUrl url = source().resolved(link);
        if (url.isLocalFile()) {
            setSource(url);
        } else {
            QDesktopServices::openUrl(url);
        }
    }

    QString folder_;
};

QMainWindow* make_window(const std::string& folder) {
    auto* window = new QMainWindow;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setObjectName(QStringLiteral("guide"));
    auto* browser = new GuideBrowser(shown(folder));
    window->setCentralWidget(browser);
    QToolBar* bar = window->addToolBar(QStringLiteral("Pages"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    const auto add = [&](const QString& text, const QKeySequence& keys, void (QTextBrowser::*go)()) {
        QAction* action = bar->addAction(text);
        action->setShortcut(keys);
        QObject::connect(action, &QAction::triggered, browser, go);
        return action;
    };
    QAction* back = add(QStringLiteral("Back"), QKeySequence::Back, &QTextBrowser::backward);
    QAction* forward = add(QStringLiteral("Forward"), QKeySequence::Forward, &QTextBrowser::forward);
    add(QStringLiteral("Contents"), QKeySequence(Qt::ALT | Qt::Key_Home), &QTextBrowser::home);
    back->setEnabled(false);
    forward->setEnabled(false);
    QObject::connect(browser, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    QObject::connect(browser, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    QObject::connect(browser, &QTextBrowser::sourceChanged, window, [window, browser] {
        const QString title = browser->documentTitle();
        window->setWindowTitle(title.isEmpty() ? QStringLiteral("User guide") : title);
    });
    new QShortcut(QKeySequence::Cancel, window, window, &QWidget::close);
    const int line = line_height();
    place_centred(*window, {line * 58, line * 44});
    browser->setFocus();
    return window;
}

}  // namespace

void show_guide(const std::string& first_page) {
    static QPointer<QMainWindow> window;
    const bool fresh = window.isNull();
    if (fresh) window = make_window(files::dir_of(first_page));
    window->show();
    // Fits pictures to the window's present width.
    if (fresh) static_cast<QTextBrowser*>(window->centralWidget())->setSource(file_url(first_page));
    window->raise();
    window->activateWindow();
}

}  // namespace quill::desktop
