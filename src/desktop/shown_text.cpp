#include "desktop/shown_text.h"

#include "text/utf8.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextBoundaryFinder>

namespace quill::desktop {
namespace {

bool is_shown_as_itself(QChar c) {
    return c.isPrint() || c.isSurrogate() || c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QLatin1Char('\t');
}

}  // namespace

QString shown(std::string_view bytes) {
    QString text = QString::fromStdString(text::to_utf8(bytes));
    for (QChar& c : text) {
        if (!is_shown_as_itself(c)) c = QChar::ReplacementCharacter;
    }
    return text;
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
    qsizetype line = 0;  // where what can't be broken yet begins
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

}  // namespace quill::desktop
