#include "decoder/naming_window.h"
#include "decoder/repair_guide.h"
#include "desktop/about_view.h"
#include "desktop/archive_view.h"
#include "desktop/chooser_view.h"
#include "desktop/contents_view.h"
#include "desktop/dialogs.h"
#include "desktop/main_window_view.h"
#include "desktop/naming_view.h"
#include "desktop/repair_view.h"
#include "desktop/shown_text.h"
#include "desktop/text_editor.h"
#include "desktop/view_fixture.h"
#include "desktop/viewer/pictures_window_view.h"
#include "encoder/file_chooser.h"
#include "files/directory.h"
#include "files/path.h"
#include "shell/about_box.h"
#include "support/temporary_directory.h"
#include "zip/contents_window.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimer>

namespace quill::tests {
namespace {

/// A hostile file name: markup, a picture to fetch, a change of the text's direction, a bell.
constexpr auto hostile = "<img src=x><b>bold</b><a href=y>link</a>&amp;\xE2\x80\xAEgpj.\x07\xE2\x81\xA6[*]";

/// Makes every text of `control` hostile.
template <class C>
void spoil(C& control) {
    if constexpr (requires { control.text; }) control.text = hostile;
    if constexpr (requires { control.caption; }) control.caption = hostile;
    if constexpr (requires { control.drive; }) control.drive = files::join("/", hostile);
    if constexpr (requires { control.path; }) control.path = files::current_directory();
    if constexpr (requires { control.set_directory(""); }) {
        control.set_directory(files::current_directory());
    } else if constexpr (requires { control.add(hostile); }) {
        control.add(hostile);
    }
}

/// Returns true if `text`, which Qt may read as markup, contains nothing but characters.
bool is_only_text(const QString& text) {
    if (!Qt::mightBeRichText(text)) return true;
    QTextDocument document;
    document.setHtml(text);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            if (format.isImageFormat() || format.isAnchor() || format.fontWeight() > QFont::Normal) return false;
        }
    }
    return true;
}

/// Every window of the program and each box, with hostile texts.
class HostileText : public ViewTest {
  protected:
    HostileText() {
        here.write(hostile_name(), "x");
        here.make_directory("d" + hostile_name());
    }

    /// Returns it as a file name, which cannot contain a slash.
    static std::string hostile_name() {
        std::string name = hostile;
        std::erase(name, '/');
        return name;
    }

    void expect_visible(const QString& text, const char* where) {
        for (const char32_t c : text.toStdU32String()) {
            const bool is_space = c == U'\n' || c == U'\t' || c == 0x200B;
            EXPECT_TRUE(is_space || desktop::is_visible(c)) << where << ": U+" << std::hex << static_cast<unsigned>(c);
        }
        seen_ += text.contains(QLatin1String("<img src=x><b>bold<")) ? 1U : 0U;
    }

    void expect_tip(const QString& tip, const char* where) {
        EXPECT_TRUE(is_only_text(tip)) << where << ": " << tip.toStdString();
        expect_visible(tip, where);
    }

    void expect_plain(const QAbstractItemModel& model, const QModelIndex& index) {
        for (const int role : {Qt::DisplayRole, Qt::AccessibleTextRole, Qt::AccessibleDescriptionRole})
            expect_visible(model.data(index, role).toString(), "row");
        for (const int role : {Qt::ToolTipRole, Qt::WhatsThisRole, Qt::StatusTipRole})
            expect_tip(model.data(index, role).toString(), "tip of a row");
    }

    void expect_plain(const QAbstractItemModel& model) {
        for (int column = 0; column < model.columnCount(); ++column) {
            expect_visible(model.headerData(column, Qt::Horizontal).toString(), "heading");
            expect_tip(model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString(), "tip of a heading");
            for (int row = 0; row < model.rowCount(); ++row) expect_plain(model, model.index(row, column));
        }
    }

    void expect_plain(QWidget& widget) {
        const QByteArray name = widget.objectName().toUtf8();
        expect_visible(widget.windowTitle(), name);
        expect_visible(widget.accessibleName(), name);
        expect_visible(widget.accessibleDescription(), name);
        for (const QString& tip : {widget.toolTip(), widget.whatsThis(), widget.statusTip()}) expect_tip(tip, name);
        if (const auto* label = qobject_cast<QLabel*>(&widget)) {
            EXPECT_TRUE(label->textFormat() == Qt::PlainText || !Qt::mightBeRichText(label->text())) << name.data();
            expect_visible(label->text(), name);
        } else if (const auto* button = qobject_cast<QAbstractButton*>(&widget)) {
            expect_visible(button->text(), name);
        } else if (const auto* line = qobject_cast<QLineEdit*>(&widget)) {
            expect_visible(line->text(), name);
        } else if (const auto* text = qobject_cast<QPlainTextEdit*>(&widget)) {
            expect_visible(text->toPlainText(), name);
        } else if (const auto* view = qobject_cast<QAbstractItemView*>(&widget)) {
            if (view->model() != nullptr) expect_plain(*view->model());
        } else if (const auto* box = qobject_cast<QComboBox*>(&widget)) {
            expect_plain(*box->model());
        }
    }

    void expect_plain_window(QWidget& window) {
        expect_plain(window);
        for (QWidget* widget : window.findChildren<QWidget*>()) expect_plain(*widget);
        for (const QAction* action : window.findChildren<QAction*>()) {
            expect_visible(action->text(), "action");
            expect_tip(action->toolTip(), "tip of an action");
        }
    }

    /// Shows `w` with all its texts hostile.
    template <class W>
    void check(W& w) {
        SCOPED_TRACE(typeid(W).name());
        visit_controls(w, [](const std::string&, const char*, auto& control) { spoil(control); });
        w.caption = hostile;
        w.visible = true;
        views.sync_all();
        seen_ = 0;
        expect_plain_window(frame_of(w));
        EXPECT_GE(seen_, 2U) << "the texts are not to be found in it";
        EXPECT_TRUE(failures.empty());
    }

    /// Checks the box that `open` shows, and cancels it.
    template <class F>
    void check_box(F&& open) {
        seen_ = 0;
        QTimer::singleShot(0, [this] {
            auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            expect_plain_window(*box);
            const auto* message = qobject_cast<QMessageBox*>(box);
            EXPECT_TRUE(message == nullptr || message->textFormat() == Qt::PlainText);
            box->reject();
        });
        open();
        EXPECT_GE(seen_, 1U);
    }

    const TemporaryDirectory here;

  private:
    unsigned seen_ = 0;  ///< texts shown unchanged
};

TEST_F(HostileText, IsShownAsItIsInEveryWindow) {
    views.add<shell::swit, desktop::MainWindowView>();
    views.add<shell::AboutBox, desktop::AboutView>();
    views.add<decoder::Form3, desktop::RepairView>();
    views.add<decoder::Form4, desktop::NamingView>();
    views.add<encoder::cmdg, desktop::ChooserView>();
    views.add<viewer::SavPic, desktop::PicturesWindowView>();
    views.add<zip::Form1, desktop::ContentsView>();
    views.add<zip::arcview, desktop::ArchiveWindowView>();
    program.main_window.Results = {
        {here.path(),
         codec::Outcome{codec::Verdict::damaged, 1, {{.kind = codec::ProblemKind::bad_crc, .text = hostile}}}}};
    check(program.main_window);
    check(program.windows.load<shell::AboutBox>());
    check(program.windows.load<decoder::Form3>());
    check(program.windows.load<decoder::Form4>());
    check(encoder::show_chooser(program.context, encoder::ChooserMode::open, here.path()));
    check(viewer::show_progress_panel(program.windows));
    check(program.windows.load<zip::Form1>(program.context));
    zip::NewZIP archives(program.context);
    check(program.windows.load<zip::arcview>(program.context, archives));
    program.windows.unload<zip::arcview>();
}

TEST_F(HostileText, IsShownAsItIsInEveryBox) {
    desktop::BoxDialogs boxes(events, views);
    check_box([&] { boxes.message(hostile, hostile); });
    check_box([&] { boxes.ask({.text = hostile, .title = hostile}); });
    check_box([&] { boxes.ask_about_existing(here.path(hostile_name())); });
    check_box([&] { boxes.input({.text = hostile, .title = hostile, .default_answer = hostile}); });
    check_box([&] { desktop::edit_in_window(here.path("no" + hostile_name())); });
    desktop::TextEditor editor;
    ASSERT_TRUE(editor.open(here.path(hostile_name())).ok());
    expect_plain_window(editor);
    editor.text().insertPlainText(QStringLiteral("change"));
    check_box([&] { editor.close(); });
}

TEST_F(HostileText, OfferedForInputComesBackByteForByteWhereItIsNotEdited) {
    desktop::BoxDialogs boxes(events, views);
    const auto answer = [&](const QString& typed) {
        QTimer::singleShot(0, [typed] {
            QWidget* box = QApplication::activeModalWidget();
            if (!typed.isEmpty()) box->findChild<QLineEdit*>()->setText(typed);
            qobject_cast<QDialog*>(box)->accept();
        });
        return boxes.input({.text = "Name?", .default_answer = "gr\xFC\xDF\x01"});
    };
    EXPECT_EQ(answer({}), "gr\xFC\xDF\x01");
    EXPECT_EQ(answer(QStringLiteral("grüß")), "gr\xC3\xBC\xC3\x9F");
}

}  // namespace
}  // namespace quill::tests
