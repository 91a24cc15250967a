#include "desktop/shown_text.h"

#include "text/utf8.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextBoundaryFinder>

namespace quill::desktop {
namespace {

constexpr char32_t zero_width_non_joiner = 0x200C;  // Persian and Indian words need these two
constexpr char32_t zero_width_joiner = 0x200D;
constexpr char32_t object_replacement = 0xFFFC;

/// Returns `bytes` with U+FFFD for each character that is neither visible nor one of `kept`.
QString shown_but_for(std::string_view bytes, QLatin1String kept) {
    QString text;
    const QString all = QString::fromStdString(text::to_utf8(bytes));
    text.reserve(all.size());
    for (const char32_t character : all.toStdU32String()) {
        const bool is_kept = character < 0x80 && kept.contains(QLatin1Char(static_cast<char>(character)));
        if (is_kept || is_visible(character)) {
            text += QChar::fromUcs4(character);
        } else {
            text += QChar::ReplacementCharacter;
        }
    }
    return text;
}

}  // namespace

bool is_visible(char32_t character) {
    switch (QChar::category(character)) {
        case QChar::Other_Control:
        case QChar::Other_Surrogate:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return false;
        case QChar::Other_Format:
            return character == zero_width_non_joiner || character == zero_width_joiner;
        default:
            return character != object_replacement && !QChar::isNonCharacter(character);
    }
}

QString shown(std::string_view bytes) {
    return shown_but_for(bytes, QLatin1String("\n\r\t"));
}

QString shown_name(std::string_view bytes) {
    return shown_but_for(bytes, QLatin1String());
}

QString window_title(const QString& text) {
    return QString(text).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

QString tool_tip(const QString& text) {
    return QLatin1String("<p style=\"white-space: pre-wrap\">") + text.toHtmlEscaped() + QLatin1String("</p>");
}

QString shown_message(std::string_view bytes) {
    QString text = shown(bytes).trimmed();
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

QString breakable(const QString& text, int longest) {
    QString broken;
    QTextBoundaryFinder words(QTextBoundaryFinder::Line, text);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    qsizetype line = 0;  // the beginning of the part that can't be broken yet
    for (qsizetype at = 0, next = characters.toNextBoundary(); next >= 0; next = characters.toNextBoundary()) {
        words.setPosition(at);
        if (words.isAtBoundary()) line = at;
        if (at - line >= longest && !text[at].isSpace()) {
            broken += QChar(0x200B);
            line = at;
        }
        broken += QStringView(text).mid(at, next - at);
        at = next;
    }
    return broken;
}

std::string typed(const QString& text) {
    return text.toStdString();
}

QString shown_size(std::uint64_t bytes) {
    const QLocale locale;
    if (bytes < 1024) {
        return bytes == 1 ? QStringLiteral("1 byte") : locale.toString(bytes) + QStringLiteral(" bytes");
    }
    return locale.formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeTraditionalFormat);
}

QUrl file_url(std::string_view path) {
    const QByteArray bytes(path.data(), static_cast<qsizetype>(path.size()));
    return QUrl::fromEncoded("file://" + bytes.toPercentEncoding("/"));
}

std::string local_path(const QUrl& address) {
    if (!address.isLocalFile()) return {};
    return QByteArray::fromPercentEncoding(address.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

}  // namespace quill::desktop
