#include "desktop/text_editor.h"

#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/path.h"
#include "text/utf8.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTextBlock>
#include <QToolBar>

namespace quill::desktop {
namespace {

constexpr std::uint64_t most_bytes = 64U << 20U;

/// A text field whose copied text keeps every character: Qt's own turns no-break spaces into blanks.
class ExactTextEdit final : public QPlainTextEdit {
  protected:
    QMimeData* createMimeDataFromSelection() const override {
        auto* copied = new QMimeData;
        copied->setText(textCursor().selectedText().replace(QChar::ParagraphSeparator, u'\n'));
        return copied;
    }
};

/// Shows a box with one plain text.
QMessageBox::StandardButton show_box(QWidget* parent, QMessageBox::Icon icon, const QString& text,
                                     QMessageBox::StandardButtons buttons = QMessageBox::Ok) {
    QMessageBox box(icon, QStringLiteral("Text editor"), QString(), buttons, parent);
    box.setTextFormat(Qt::PlainText);
    box.setText(breakable(text));
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace

TextEditor::TextEditor(QWidget* parent)
    : QMainWindow(parent),
      text_(new ExactTextEdit),
      sought_(new QLineEdit),
      found_(plain_label()),
      note_(plain_label()),
      position_(plain_label()) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("text editor"));
    text_->setFont(fixed_font());
    text_->setAccessibleName(QStringLiteral("Text of the file"));
    text_->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setCentralWidget(text_);
    build_menu();
    build_find_bar();
    statusBar()->addWidget(note_);
    statusBar()->addPermanentWidget(position_);
    QObject::connect(text_, &QPlainTextEdit::cursorPositionChanged, this, [this] { show_position(); });
    QObject::connect(text_->document(), &QTextDocument::modificationChanged, this, [this] { show_title(); });
    const int line = fontMetrics().height();
    place_centred(*this, {line * 48, line * 34});
    show_position();
    text_->setFocus();
}

void TextEditor::build_menu() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("&Open..."), QKeySequence::Open, this, [this] { choose_file(); });
    file->addAction(QStringLiteral("&Save"), QKeySequence::Save, this, [this] { save_or_say(); });
    file->addSeparator();
    file->addAction(QStringLiteral("&Close"), QKeySequence::Close, this, [this] { close(); });
    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    edit->addAction(QStringLiteral("&Undo"), QKeySequence::Undo, text_, &QPlainTextEdit::undo);
    edit->addAction(QStringLiteral("&Redo"), QKeySequence::Redo, text_, &QPlainTextEdit::redo);
    edit->addSeparator();
    edit->addAction(QStringLiteral("&Find"), QKeySequence::Find, sought_, [this] {
        sought_->setFocus();
        sought_->selectAll();
    });
    edit->addAction(QStringLiteral("Find &next"), QKeySequence(Qt::Key_F3), this, [this] { find(sought_->text()); });
    edit->addAction(QStringLiteral("Find &previous"), QKeySequence(Qt::SHIFT | Qt::Key_F3), this,
                    [this] { find(sought_->text(), true); });
}

void TextEditor::build_find_bar() {
    QToolBar* bar = addToolBar(QStringLiteral("Find"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    auto* save = new QPushButton(QStringLiteral("Save"));
    QObject::connect(save, &QPushButton::clicked, this, [this] { save_or_say(); });
    bar->addWidget(save);
    auto* space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(space);
    auto* label = plain_label(QStringLiteral("Find: "));
    label->setBuddy(sought_);
    bar->addWidget(label);
    sought_->setAccessibleName(QStringLiteral("Text to find"));
    sought_->setMaximumWidth(fontMetrics().averageCharWidth() * 36);
    QObject::connect(sought_, &QLineEdit::returnPressed, this, [this] { find(sought_->text()); });
    bar->addWidget(sought_);
    bar->addWidget(found_);
}

Status TextEditor::open(const std::string& path) {
    const auto size = files::file_size(path);
    if (size && *size > most_bytes) return Error{ErrorCode::limit, 0, "it is too large to be edited here"};
    const auto bytes = files::read_file(path);
    if (!bytes) return bytes.error();
    const FileText file = read_text(*bytes);
    path_ = path;
    form_ = file.form;
    text_->setPlainText(file.text);
    const Result<std::string> again = text_bytes(text_->document()->toRawText(), form_);
    can_be_saved_ = again && *again == *bytes;
    text_->setReadOnly(!can_be_saved_);
    text_->document()->setModified(false);
    show_note(file);
    show_title();
    return Done{};
}

Status TextEditor::save() {
    if (!can_be_saved_ || path_.empty()) return Error{ErrorCode::unsupported, 0, "it can only be read here"};
    const Result<std::string> bytes = text_bytes(text_->document()->toRawText(), form_);
    if (!bytes) return bytes.error();
    const Status written = files::rewrite_file(path_, *bytes);
    if (written) text_->document()->setModified(false);
    return written;
}

bool TextEditor::find(const QString& what, bool backwards) {
    if (what.isEmpty()) return false;
    const QTextDocument::FindFlags flags =
        backwards ? QTextDocument::FindFlags(QTextDocument::FindBackward) : QTextDocument::FindFlags();
    bool found = text_->find(what, flags);
    if (!found) {
        const QTextCursor before = text_->textCursor();
        text_->moveCursor(backwards ? QTextCursor::End : QTextCursor::Start);
        found = text_->find(what, flags);
        if (!found) text_->setTextCursor(before);
    }
    found_->setText(found ? QString() : QStringLiteral(" not found"));
    return found;
}

void TextEditor::choose_file() {
    if (!may_leave()) return;
    const QString from = QFile::decodeName(QByteArray::fromStdString(files::dir_of(path_)));
    const QString file = QFileDialog::getOpenFileName(this, QStringLiteral("Open a text"), from);
    if (file.isEmpty()) return;
    if (const Status opened = open(QFile::encodeName(file).toStdString()); !opened) {
        say(QStringLiteral("The file could not be opened"), opened.error());
    }
}

bool TextEditor::save_or_say() {
    const Status saved = save();
    if (!saved) say(QStringLiteral("The file could not be saved"), saved.error());
    statusBar()->showMessage(saved ? QStringLiteral("Saved") : QString(), 4000);
    return saved.ok();
}

bool TextEditor::may_leave() {
    if (!text_->document()->isModified()) return true;
    const auto answer = show_box(this, QMessageBox::Question,
                                 QStringLiteral("Save the changes to %1?").arg(shown_name(files::name_of(path_))),
                                 QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Save) return save_or_say();
    return answer == QMessageBox::Discard;
}

void TextEditor::closeEvent(QCloseEvent* event) {
    event->setAccepted(may_leave());
}

void TextEditor::show_position() {
    const QTextCursor cursor = text_->textCursor();
    position_->setText(
        QStringLiteral("Line %1, column %2").arg(cursor.blockNumber() + 1).arg(cursor.columnNumber() + 1));
}

void TextEditor::show_title() {
    setWindowTitle(window_title(shown_name(files::name_of(path_))) + QStringLiteral("[*]"));
    setWindowModified(text_->document()->isModified());
}

void TextEditor::show_note(const FileText& file) {
    QStringList notes;
    if (!can_be_saved_) notes += QStringLiteral("Read only: the editor would change bytes of this file.");
    if (file.held > 0) {
        notes += QStringLiteral("%L1 %2 not text, shown as \uFFFD.")
                     .arg(file.held)
                     .arg(file.held == 1 ? QStringLiteral("byte is") : QStringLiteral("bytes are"));
    }
    if (file.odd_ends > 0) notes += QStringLiteral("Line ends are mixed: \uFFFD marks the rarer kind.");
    note_->setText(notes.join(QLatin1Char(' ')));
    note_->setToolTip(notes.isEmpty() ? QString()
                                      : tool_tip(QStringLiteral("What you do not edit is saved as it was.")));
}

void TextEditor::say(const QString& what, const Error& error) {
    show_box(this, QMessageBox::Warning, QStringLiteral("%1: %2.").arg(what, shown(error.text)));
}

void edit_in_window(const std::string& path) {
    auto* editor = new TextEditor;
    const Status opened = editor->open(path);
    if (opened) {
        editor->show();
        editor->raise();
        editor->activateWindow();
        return;
    }
    show_box(nullptr, QMessageBox::Warning,
             QStringLiteral("The file %1 could not be opened: %2.")
                 .arg(shown_name(files::name_of(path)), shown(opened.error().text)));
    delete editor;
}

void wait_for_editors() {
    bool waits = false;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* editor = dynamic_cast<TextEditor*>(window);
        if (editor == nullptr || !editor->isVisible()) continue;
        if (editor->isWindowModified()) {
            waits = true;
        } else {
            editor->close();
        }
    }
    if (waits) QApplication::exec();
}

}  // namespace quill::desktop
