#include "desktop/book_view.h"

#include "desktop/plain_browser.h"
#include "desktop/view_fixture.h"
#include "htx/book_reader.h"
#include "support/temporary_directory.h"

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QListWidget>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollBar>
#include <QStyle>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimer>
#include <QWheelEvent>

#include <cstdint>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace quill::tests {
namespace {

/// A port of this machine that listens for connections and for datagrams.
class Listener {
  public:
    explicit Listener(int family)
        : family_(family),
          stream_(socket(family, SOCK_STREAM | SOCK_NONBLOCK, 0)),
          datagrams_(socket(family, SOCK_DGRAM | SOCK_NONBLOCK, 0)) {
        works_ = bind_to(stream_, 0) && listen(stream_, 16) == 0 && bind_to(datagrams_, port_);
    }
    ~Listener() {
        close(stream_);
        close(datagrams_);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    bool works() const { return works_; }
    std::string host() const { return (family_ == AF_INET6 ? "[::1]:" : "127.0.0.1:") + std::to_string(port_); }
    bool was_called() const {
        char byte = 0;
        return accept(stream_, nullptr, nullptr) >= 0 || recv(datagrams_, &byte, 1, 0) >= 0;
    }

  private:
    /// Binds to the loopback address, at a free port if `port` is 0.
    bool bind_to(int fd, int port) {
        sockaddr_storage address{};
        address.ss_family = static_cast<sa_family_t>(family_);
        auto& v4 = reinterpret_cast<sockaddr_in&>(address);
        auto& v6 = reinterpret_cast<sockaddr_in6&>(address);
        if (family_ == AF_INET6) {
            v6.sin6_addr = in6addr_loopback;
        } else {
            v4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        }
        v4.sin_port = htons(static_cast<std::uint16_t>(port));  // at the same place in both
        socklen_t size = family_ == AF_INET6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in);
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        const bool is_bound = bind(fd, any, size) == 0 && getsockname(fd, any, &size) == 0;
        port_ = ntohs(v4.sin_port);
        return is_bound;
    }

    int family_, stream_, datagrams_;
    int port_ = 0;
    bool works_ = false;
};

class BookViewTest : public ViewTest {
  protected:
    /// Opens the reader on a book of these pages.
    htx::Form7& open(const std::vector<std::pair<std::string, std::string>>& files) {
        views.add<htx::Form7, desktop::BookView>();
        std::vector<htx::Form7::File> unpacked;
        for (const auto& [name, bytes] : files) unpacked.push_back({name, directory.write("book/" + name, bytes)});
        auto& w = program.windows.load<htx::Form7>(program.context);
        w.show_files(unpacked);
        w.visible = true;
        views.sync_all();
        settle();
        return w;
    }
    static void settle() {
        for (int i = 0; i < 20; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    desktop::PlainBrowser* browser(htx::Form7& w) {
        return dynamic_cast<desktop::PlainBrowser*>(widget<QTextBrowser>(w, "WebBrowser1"));
    }

    TemporaryDirectory directory;
};

/// Ways for pages to phone home, to read files or to run programs. HOST, FILE are replaced.
const std::vector<std::string> attacks = {
    "<img src=http://HOST/a.png>",
    "<img src=//HOST/a.png>",
    "<img srcset='http://HOST/a.png 2x'>",
    "<link rel=stylesheet href=http://HOST/a.css>",
    "<link rel=preload as=image href=http://HOST/a.png>",
    "<link rel=prefetch href=http://HOST/a>",
    "<link rel=dns-prefetch href=//HOST>",
    "<link rel=preconnect href=http://HOST>",
    "<link rel=icon href=http://HOST/a.ico>",
    "<link rel=manifest href=http://HOST/a>",
    "<link rel=import href=http://HOST/a>",
    "<style>@import 'http://HOST/a.css';</style>",
    "<style>@import url(http://HOST/a.css);</style>",
    "<style>p{background:url(http://HOST/a.png)}</style><p>x</p>",
    "<p style='background:url(http://HOST/a.png)'>x</p>",
    "<p style='list-style-image:url(http://HOST/a.png)'>x</p>",
    "<style>@font-face{font-family:x;src:url(http://HOST/a.woff)}*{font-family:x}</style>x",
    "<style>p:before{content:url(http://HOST/a.png)}</style><p>x</p>",
    "<body background=http://HOST/a.png>x",
    "<table background=http://HOST/a.png><tr><td background=http://HOST/b.png>x</table>",
    "<meta http-equiv=refresh content='0;url=http://HOST/a'>",
    "<meta http-equiv=refresh content='0;url=file://FILE'>",
    "<iframe src=http://HOST/a></iframe>",
    "<iframe src=file://FILE></iframe>",
    "<iframe srcdoc='<img src=http://HOST/a>'></iframe>",
    "<frameset><frame src=http://HOST/a></frameset>",
    "<object data=http://HOST/a></object>",
    "<object data=file://FILE></object>",
    "<embed src=http://HOST/a>",
    "<applet code=a codebase=http://HOST/></applet>",
    "<video src=http://HOST/a poster=http://HOST/b></video>",
    "<audio src=http://HOST/a autoplay></audio>",
    "<video><source src=http://HOST/a><track src=http://HOST/b></video>",
    "<svg><image href=http://HOST/a.png /></svg>",
    "<svg><use xlink:href='http://HOST/a.svg#x'/></svg>",
    "<svg><script>x</script></svg>",
    "<svg><feImage href=http://HOST/a /></svg>",
    "<input type=image src=http://HOST/a.png>",
    "<base href=http://HOST/><img src=a.png>",
    "<base href=file:///><img src=FILE>",
    "<a ping=http://HOST/a href=x.htm>x</a>",
    "<form action=http://HOST/a><input autofocus onfocus=submit()></form>",
    "<script src=http://HOST/a.js></script>",
    "<script>new Image().src='http://HOST/a'</script>",
    "<script>location='http://HOST/a'</script>",
    "<script>new WebSocket('ws://HOST/a')</script>",
    "<script>new RTCPeerConnection({iceServers:[{urls:'stun:HOST'}]})</script>",
    "<img src=x onerror=\"location='http://HOST/a'\">",
    "<body onload=\"location='http://HOST/a'\">",
    "<script src='data:text/javascript,location=1'></script>",
    "<iframe src='data:text/html,<img src=http://HOST/a>'></iframe>",
    "<img src='data:image/svg+xml,<svg xmlns=\"http://www.w3.org/2000/svg\"><image href=\"http://HOST/a\"/></svg>'>",
    "<img src=file://FILE>",
    "<img src=FILE>",
    "<img src=../outside.png>",
    "<img src='..%2Foutside.png'>",
    "<img src='\\\\HOST\\a.png'>",
    "<link rel=stylesheet href=file://FILE>",
    "<style>@import 'file://FILE';</style>",
    "<img src='book://HOST/../../outside.png'>",
    "<img src=qrc:/a.png><img src=ftp://HOST/a><img src='about:blank'>",
    "<?xml version='1.0'?><!DOCTYPE x [<!ENTITY e SYSTEM 'file://FILE'>]><p>&e;</p>",
};

std::string filled(std::string page, const std::string& host, const std::string& file) {
    for (const auto& [key, value] : {std::pair<std::string, std::string>{"HOST", host}, {"FILE", file}}) {
        for (std::size_t at = 0; (at = page.find(key, at)) != std::string::npos; at += value.size())
            page.replace(at, key.size(), value);
    }
    return page;
}

/// The pages that attack `host` and `file`.
std::vector<std::pair<std::string, std::string>> hostile_pages(const std::string& host, const std::string& file) {
    std::vector<std::pair<std::string, std::string>> pages;
    for (std::size_t i = 0; i < attacks.size(); ++i) {
        pages.emplace_back(std::to_string(1000 + i) + ".htm", filled(attacks[i], host, file));
    }
    return pages;
}

bool shows_red(QWidget& window) {
    const QImage drawn = window.grab().toImage();
    for (int y = 0; y < drawn.height(); y += 8) {
        for (int x = 0; x < drawn.width(); x += 8) {
            if (drawn.pixelColor(x, y) == QColor(Qt::red)) return true;
        }
    }
    return false;
}

TEST_F(BookViewTest, HostilePagesReachNeitherTheNetworkNorOtherFiles) {
    FakePictures& pictures = program.platform.fake_pictures;
    pictures.set(directory.write("outside.png", "a picture"), plain_picture(64, 64, 0xFFFF0000));
    ASSERT_GE(attacks.size(), 60U);
    for (const int family : {AF_INET, AF_INET6}) {
        const Listener listener(family);
        if (family == AF_INET6 && !listener.works()) continue;  // a machine without IPv6
        ASSERT_TRUE(listener.works());
        const auto pages = hostile_pages(listener.host(), directory.path("outside.png"));
        program.windows.unload<htx::Form7>();
        auto& w = open(pages);
        for (std::size_t page = 0; page < pages.size(); ++page) {
            events.hand_in([&] { w.go_to(page); });
            settle();
            pictures.answer_all();
            settle();
            EXPECT_EQ(w.page(), page) << pages[page].second;
            EXPECT_FALSE(shows_red(frame_of(w))) << pages[page].second;
            EXPECT_FALSE(listener.was_called()) << pages[page].second;
        }
    }
    for (const auto& request : pictures.log) EXPECT_TRUE(request.source.path.starts_with(directory.path("book/")));
    EXPECT_TRUE(program.platform.started.empty());
    EXPECT_TRUE(program.platform.opened.empty());
}

TEST_F(BookViewTest, ThePageGetsNothingFromOutsideTheBook) {
    auto& w = open({{"a.htm", "x"}});
    for (const char* address : {"file:///etc/passwd", "../outside.png", "http://x/", "qrc:/x", "data:text/css,p{}"}) {
        const QVariant style =
            browser(w)->loadResource(QTextDocument::StyleSheetResource, QUrl(QLatin1String(address)));
        EXPECT_TRUE(style.isValid() && !style.isNull() && style.toByteArray().isEmpty()) << address;
    }
}

TEST_F(BookViewTest, ShowsPagesPicturesAndLinksOfTheBook) {
    auto& w =
        open({{"a.htm", "<title>Caf&eacute;</title><p>one</p><img src='d/my%20green.png'><a href='d/b.htm#x'>on</a>"},
              {"d/b.htm", "<title>Two</title><p>two</p><a name=x>here</a>"},
              {"d/my green.png", "a picture"}});
    EXPECT_EQ(w.caption, "Caf\xC3\xA9");
    EXPECT_TRUE(browser(w)->toPlainText().contains(QStringLiteral("one")));
    const auto shown = [&] {
        const QVariant found =
            browser(w)->document()->resource(QTextDocument::ImageResource, QUrl(QStringLiteral("d/my%20green.png")));
        return found.value<QImage>().width();
    };
    EXPECT_EQ(shown(), 1) << "a place until it is decoded";
    program.platform.fake_pictures.set(directory.path("book/d/my green.png"), plain_picture(40, 30, 0xFF00FF00));
    EXPECT_EQ(program.platform.fake_pictures.answer_all(), 1U);
    settle();
    EXPECT_EQ(shown(), 40);
    Q_EMIT browser(w)->anchorClicked(browser(w)->source().resolved(QUrl(QStringLiteral("d/b.htm#x"))));
    settle();
    EXPECT_EQ(w.Label2.text, "Page 2 of 2");
    EXPECT_TRUE(browser(w)->toPlainText().contains(QStringLiteral("two")));
    events.hand_in(w.Command3(0).click);
    settle();
    EXPECT_EQ(w.Label2.text, "Page 1 of 2");
    events.hand_in(w.Command4.click);
    EXPECT_TRUE(widget(w, "List3")->isVisible());
    EXPECT_TRUE(failures.empty());
}

TEST_F(BookViewTest, ZoomsScrollsAndTurnsByKeysAndWheel) {
    std::string lines;
    for (int i = 0; i < 400; ++i) lines += "<p>line " + std::to_string(i) + "</p>";
    auto& w = open({{"a.htm", lines}, {"b.htm", lines}});
    auto* page = browser(w);
    page->go_to_place(1500);
    const std::size_t top = page->place();
    EXPECT_NEAR(static_cast<double>(top), 1500, 20);
    const double usual = page->font().pointSizeF();
    QWheelEvent wheel({5, 5}, page->mapToGlobal(QPointF(5, 5)), {}, {0, 240}, Qt::NoButton, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(page->viewport(), &wheel);
    EXPECT_NEAR(page->font().pointSizeF(), usual * 1.2, 0.01);
    EXPECT_NEAR(static_cast<double>(page->place()), static_cast<double>(top), 20);
    events.hand_in(w.usual.click);
    EXPECT_NEAR(page->font().pointSizeF(), usual, 0.01);

    page->verticalScrollBar()->setValue(0);
    press(page, Qt::Key_Space);
    EXPECT_GT(page->verticalScrollBar()->value(), 0);
    EXPECT_EQ(w.page(), 0U);
    page->verticalScrollBar()->setValue(page->verticalScrollBar()->maximum());
    press(page, Qt::Key_PageDown);
    settle();
    EXPECT_EQ(w.page(), 1U);
    EXPECT_EQ(page->verticalScrollBar()->value(), 0);
    press(page, Qt::Key_PageUp);
    settle();
    EXPECT_EQ(w.page(), 0U);
    for (const Qt::MouseButton button : {Qt::BackButton, Qt::ForwardButton}) {
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(5, 5), page->mapToGlobal(QPointF(5, 5)), button,
                            Qt::NoButton, {});
        QCoreApplication::sendEvent(page->viewport(), &release);
        settle();
        EXPECT_EQ(w.page(), button == Qt::BackButton ? 1U : 0U);
    }
}

TEST_F(BookViewTest, ZoomsPicturesWithTheLetters) {
    const std::string page = "<img src=p.png><img src=p.png width=20 height=15>";
    auto& w = open({{"a.htm", page}, {"b.htm", page}, {"p.png", "a picture"}});
    FakePictures& pictures = program.platform.fake_pictures;
    pictures.set(directory.path("book/p.png"), plain_picture(40, 30, 0xFF00FF00));
    const auto sizes = [&] {
        settle();
        pictures.answer_all();
        settle();
        std::vector<double> all;
        const QTextBlock block = browser(w)->document()->firstBlock();
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextImageFormat format = it.fragment().charFormat().toImageFormat();
            all.insert(all.end(), {format.width(), format.height()});
        }
        return all;
    };
    EXPECT_EQ(sizes(), (std::vector<double>{40, 30, 20, 15}));
    events.hand_in([&] { w.zoom_by(10); });
    EXPECT_EQ(sizes(), (std::vector<double>{80, 60, 40, 30}));
    EXPECT_GT(pictures.log.back().bounds.width, pictures.log.front().bounds.width) << "more pixels of a large one";
    events.hand_in([&] { w.go_to(1); });
    EXPECT_EQ(sizes(), (std::vector<double>{80, 60, 40, 30}));
    events.hand_in([&] { w.zoom_by(-15); });
    EXPECT_EQ(sizes(), (std::vector<double>{20, 15, 10, 7.5}));
}

TEST_F(BookViewTest, PicturesOfOneNameInTwoDirectoriesAreKeptApart) {
    auto& w = open({{"a.htm", "<img src=p.png>"},
                    {"d/b.htm", "<img src=p.png>"},
                    {"p.png", "a picture"},
                    {"d/p.png", "another picture"}});
    FakePictures& pictures = program.platform.fake_pictures;
    pictures.set(directory.path("book/p.png"), plain_picture(200, 200, 0xFF00FF00));
    pictures.set(directory.path("book/d/p.png"), plain_picture(200, 200, 0xFFFF0000));
    for (const bool second : {false, true, false}) {
        events.hand_in([&] { w.go_to(second ? 1 : 0); });
        settle();
        pictures.answer_all();
        settle();
        EXPECT_EQ(shows_red(frame_of(w)), second);
    }
}

TEST_F(BookViewTest, MarksTheFirstHitOfEachSearch) {
    auto& w = open({{"a.htm", "<p>one two</p>"}});
    auto* rows = widget<QListWidget>(w, "hits");
    for (const char* text : {"one", "two"}) {
        program.platform.expect_input("Find in all pages", text);
        events.hand_in(w.fnb.click);
        EXPECT_EQ(rows->currentRow(), 0) << text;
    }
}

TEST_F(BookViewTest, GoesToEachPlaceFound) {
    auto& w = open({{"a.htm", "<p>needle</p><p>b</p><p>Needle and needle</p>"}});
    browser(w)->find_place("needle", 2);
    EXPECT_EQ(browser(w)->textCursor().selectionStart(), 20);
    browser(w)->find_place("needle", 0);
    EXPECT_EQ(browser(w)->textCursor().selectionStart(), 0);
    EXPECT_FALSE(browser(w)->find("needle", platform::Browser::Direction::backward));
    EXPECT_TRUE(browser(w)->find("needle", platform::Browser::Direction::forward));
    EXPECT_EQ(browser(w)->textCursor().selectionStart(), 9);
}

TEST_F(BookViewTest, PrintsThePage) {
    auto& w = open({{"a.htm", "<p>text</p>"}});
    const std::string paper = directory.path("paper.pdf");
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->printer()->setOutputFormat(QPrinter::PdfFormat);
        dialog->printer()->setOutputFileName(QString::fromStdString(paper));
        dialog->done(QDialog::Accepted);
    });
    events.hand_in(w.prn.click);
    ASSERT_TRUE(directory.has("paper.pdf"));
    EXPECT_TRUE(directory.read("paper.pdf").starts_with("%PDF"));
}

TEST_F(BookViewTest, OpensInTheBooksWindowAndStaysWhereTheUserMovesIt) {
    views.add<htx::Form7, desktop::BookView>();
    auto& w = program.windows.load<htx::Form7>(program.context);
    w.show_files({{"a.htm", directory.write("book/a.htm", "x")}});
    w.wanted = {10500, 7500, 300, 450};
    w.visible = true;
    views.sync_all();
    settle();
    const int title = frame_of(w).style()->pixelMetric(QStyle::PM_TitleBarHeight);
    EXPECT_GE(title, 10);
    EXPECT_EQ(frame_of(w).geometry(), QRect(30, 20 + title, 700, 500)) << "below its title bar";
    frame_of(w).move(60, 50);
    frame_of(w).resize(720, 520);
    settle();
    EXPECT_EQ(program.session.BookWidth, 10800);
    EXPECT_EQ(program.session.BookTop, 750);
    for (const bool visible : {false, true}) events.hand_in([&] { w.visible = visible; });
    settle();
    EXPECT_EQ(frame_of(w).size(), QSize(720, 520));
}

TEST_F(BookViewTest, PagesAreBlackOnWhiteOnADarkDesktop) {
    const QPalette usual = QApplication::palette();
    QPalette dark(QColor(40, 40, 40));
    dark.setColor(QPalette::Link, QColor(120, 180, 255));
    QApplication::setPalette(dark);
    auto& w = open({{"a.htm", "<p>text <a href=a.htm>link</a></p>"}});
    QApplication::setPalette(usual);
    const QImage drawn = browser(w)->viewport()->grab().toImage();
    EXPECT_EQ(drawn.pixelColor(drawn.width() - 5, drawn.height() - 5), QColor(Qt::white));
    EXPECT_EQ(browser(w)->palette().color(QPalette::Text), QColor(Qt::black));
    QTextCursor cursor(browser(w)->document());
    cursor.setPosition(7);
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(0, 0, 0xEE));
}

TEST_F(BookViewTest, EveryControlHasAnAccessibleName) {
    auto& w = open({{"a.htm", "x"}});
    visit_controls(w, [&](const std::string& name, const char*, auto&) {
        auto* drawn = frame_of(w).findChild<QWidget*>(QString::fromStdString(name));
        if (drawn != nullptr) {
            EXPECT_TRUE(qobject_cast<QMenu*>(drawn) != nullptr || !drawn->accessibleName().isEmpty()) << name;
        }
    });
}

}  // namespace
}  // namespace quill::tests
