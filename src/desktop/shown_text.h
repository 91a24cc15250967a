#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <string>
#include <string_view>

/// Conversion of the program's 8-bit text to Unicode, and back.
namespace quill::desktop {

/// Returns true if `character` is drawn as itself. Control, formatting and text-direction characters, line and
/// paragraph separators, noncharacters and halves of surrogate pairs are not.
bool is_visible(char32_t character);

/// Returns `bytes` for display: read as UTF-8 if valid, else as Windows-1252. Invisible characters except line ends and
/// tabs become U+FFFD.
QString shown(std::string_view bytes);

/// Returns a name for display: like `shown`, with line ends and tabs as U+FFFD too.
QString shown_name(std::string_view bytes);

/// Returns `text` escaped for a window's title, in which Qt replaces "[*]" with its mark of changes.
QString window_title(const QString& text);

/// Returns `text` as a tool tip that shows it unchanged, whatever markup it contains, in lines that wrap.
QString tool_tip(const QString& text);

/// Returns a message for display: with uniform line ends and without blanks at the beginning and the end.
QString shown_message(std::string_view bytes);

/// Returns `text` with places to break, U+200B, in words of more than `longest` characters.
QString breakable(const QString& text, int longest = 32);

/// Returns the user's input as UTF-8.
std::string typed(const QString& text);

/// Returns a size for people: "812 bytes", "1.4 MB".
QString shown_size(std::uint64_t bytes);

/// Returns the address of the file at the absolute path `path`, whose bytes need not be UTF-8.
QUrl file_url(std::string_view path);

/// Returns the path of a local file's address, byte for byte; empty for any other address.
std::string local_path(const QUrl& address);

}  // namespace quill::desktop
