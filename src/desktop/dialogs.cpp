#include "desktop/dialogs.h"

#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "files/directory.h"
#include "files/path.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace quill::desktop {
namespace {

constexpr auto program_name = "Quillbright Pro";
constexpr int characters_a_line = 64;  // a readable width
constexpr int least_characters = 24;

QString title_of(const std::string& title) {
    return title.empty() ? QString::fromLatin1(program_name) : window_title(shown_name(title));
}

/// Returns the width that the text needs, up to a readable line.
int text_width(const QWidget& box, const QString& text) {
    const QFontMetrics metrics = box.fontMetrics();
    const int line = metrics.averageCharWidth() * characters_a_line;
    int widest = 0;
    for (const QString& paragraph : text.split(QLatin1Char('\n'))) {
        widest = std::max(widest, metrics.horizontalAdvance(paragraph) + 2);
    }
    return std::min(line, widest);
}

/// Fills a message box with a plain, selectable text. The box itself wraps long lines; a word longer than a line is
/// broken.
void fill(QMessageBox& box, const std::string& text, const std::string& title, QMessageBox::Icon icon) {
    box.setWindowTitle(title_of(title));
    box.setIcon(icon);
    box.setTextFormat(Qt::PlainText);
    const QString words = breakable(shown_message(text));
    box.setText(words);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A short text leaves room for the title. A longer one must not get a fixed width, or the box becomes too narrow.
    const int least = box.fontMetrics().averageCharWidth() * least_characters;
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (label != nullptr && text_width(box, words) < least) label->setMinimumWidth(least);
}

/// Hides the text typed into `line`. Returns a button that shows it.
QPushButton* hide_typing(QLineEdit* line) {
    line->setEchoMode(QLineEdit::Password);
    auto* button = new QPushButton(QStringLiteral("&Show"));
    button->setCheckable(true);
    button->setAutoDefault(false);
    button->setAccessibleName(QStringLiteral("Show the password"));
    QObject::connect(button, &QPushButton::toggled, line, [line, button](bool shown) {
        line->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
        button->setText(shown ? QStringLiteral("&Hide") : QStringLiteral("&Show"));
        line->setFocus();
    });
    return button;
}

QString as_qt_filter(const std::string& patterns) {
    if (patterns == "*.*" || patterns.empty()) return QStringLiteral("All files (*)");
    const QString spaced = shown(patterns).replace(QLatin1Char(';'), QLatin1Char(' '));
    return QStringLiteral("%1 (%1);;All files (*)").arg(spaced);
}

}  // namespace

BoxDialogs::BoxDialogs(EventLoop& events, Views& views) : events_(events), views_(views) {}

int BoxDialogs::run(QDialog& box) {
    events_.check_ended();
    views_.sync_all();
    const EventLoop::WaitsForUser waits(events_);
    const int answer = box.exec();
    events_.check_ended();
    return answer;
}

void BoxDialogs::message(const std::string& text, const std::string& title) {
    show(text, title, false);
}

void BoxDialogs::warn(const std::string& text, const std::string& title) {
    show(text, title, true);
}

void BoxDialogs::show(const std::string& text, const std::string& title, bool is_warning) {
    QMessageBox box(QApplication::activeWindow());
    fill(box, text, title, is_warning ? QMessageBox::Warning : QMessageBox::Information);
    box.setStandardButtons(QMessageBox::Ok);
    run(box);
}

bool BoxDialogs::ask(const platform::Question& question) {
    QMessageBox box(QApplication::activeWindow());
    const bool is_risky = question.no_is_default && !question.question_mark;
    fill(box, question.text, question.title, is_risky ? QMessageBox::Critical : QMessageBox::Question);
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(question.no_is_default ? QMessageBox::No : QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
    return run(box) == QMessageBox::Yes;
}

platform::Collision BoxDialogs::ask_about_existing(const std::string& path) {
    QMessageBox box(QApplication::activeWindow());
    fill(box, "There is already a file called " + files::name_of(path) + " in " + files::dir_of(path) + ".",
         "The file exists", QMessageBox::Question);
    const QAbstractButton* replace = box.addButton(QStringLiteral("&Replace it"), QMessageBox::DestructiveRole);
    QPushButton* keep = box.addButton(QStringLiteral("&Keep both"), QMessageBox::AcceptRole);
    box.setEscapeButton(box.addButton(QMessageBox::Cancel));
    box.setDefaultButton(keep);
    run(box);
    if (box.clickedButton() == replace) return platform::Collision::replace;
    return box.clickedButton() == keep ? platform::Collision::keep_both : platform::Collision::cancel;
}

std::size_t BoxDialogs::choose(const platform::Choices& choices) {
    QMessageBox box(QApplication::activeWindow());
    fill(box, choices.text, choices.title, QMessageBox::Question);
    std::vector<QPushButton*> buttons;
    for (std::size_t i = 0; i < choices.answers.size(); ++i) {
        const bool escapes = i == choices.escape_answer;
        buttons.push_back(
            box.addButton(shown(choices.answers[i]), escapes ? QMessageBox::RejectRole : QMessageBox::AcceptRole));
    }
    box.setDefaultButton(buttons.at(choices.default_answer));
    box.setEscapeButton(buttons.at(choices.escape_answer));
    run(box);
    const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
    return clicked == buttons.end() ? choices.escape_answer : static_cast<std::size_t>(clicked - buttons.begin());
}

std::string BoxDialogs::input(const platform::Prompt& prompt) {
    QDialog box(QApplication::activeWindow());
    box.setWindowTitle(title_of(prompt.title));
    auto* layout = new QVBoxLayout(&box);
    const QString words = shown_message(prompt.text);
    QLabel* label = plain_label(words);
    label->setWordWrap(true);
    label->setMinimumWidth(text_width(box, words));
    const QString offered = shown_name(prompt.default_answer);
    auto* line = new QLineEdit(offered);
    line->setAccessibleName(words);
    line->selectAll();
    if (prompt.is_file_name) {
        const std::string stem = prompt.default_answer.substr(0, files::extension_at(prompt.default_answer));
        line->setSelection(0, static_cast<int>(shown_name(stem).size()));
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &box, &QDialog::reject);
    layout->addWidget(label);
    auto* entry = new QHBoxLayout;
    entry->addWidget(line);
    if (prompt.secret) entry->addWidget(hide_typing(line));
    layout->addLayout(entry);
    layout->addWidget(buttons);
    layout->setSpacing(box.fontMetrics().height() / 2);
    line->setFocus();
    if (run(box) != QDialog::Accepted) return {};
    return line->text() == offered ? prompt.default_answer : typed(line->text());  // its bytes need not be UTF-8
}

std::string BoxDialogs::choose_file(const platform::FileRequest& request) {
    const std::string& wanted = request.directory;
    const QString from =
        files::is_directory(wanted) ? QFile::decodeName(QByteArray::fromStdString(wanted)) : QDir::homePath();
    QFileDialog box(QApplication::activeWindow(), title_of(request.title), from, as_qt_filter(request.patterns));
    box.setFileMode(QFileDialog::ExistingFile);
    if (run(box) != QDialog::Accepted || box.selectedFiles().isEmpty()) return {};
    return QFile::encodeName(box.selectedFiles().front()).toStdString();
}

std::optional<controls::Colour> BoxDialogs::choose_colour(const controls::Colour& current) {
    QColorDialog box(QColor(current.red, current.green, current.blue), QApplication::activeWindow());
    if (run(box) != QDialog::Accepted) return std::nullopt;
    const QColor chosen = box.currentColor().toRgb();
    const auto part = [](int value) { return static_cast<std::uint8_t>(value); };
    return controls::Colour{part(chosen.red()), part(chosen.green()), part(chosen.blue())};
}

}  // namespace quill::desktop
