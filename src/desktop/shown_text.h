#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <string>
#include <string_view>

/// Where the program's 8-bit text becomes Unicode, and back.
namespace quill::desktop {

/// Returns whether `character` is drawn as itself. Control, formatting and text-direction characters are
/// not; line and paragraph separators, noncharacters and halves of surrogate pairs are not either.
bool is_visible(char32_t character);

/// Returns `bytes` as shown: read as UTF-8 where valid, else as Windows-1252. What is not visible, but for line ends
/// and tabs, becomes U+FFFD.
QString shown(std::string_view bytes);

/// Returns a name as shown: as `shown`, and line ends and tabs become U+FFFD too.
QString shown_name(std::string_view bytes);

/// Returns `text` as a window's title, in which Qt takes "[*]" for the place of its mark of changes.
QString window_title(const QString& text);

/// Returns `text` as a tool tip that shows it as it is, whatever markup it contains, in lines that wrap.
QString tool_tip(const QString& text);

/// A message as shown: line ends of any kind are one, and the blanks that begin and end it are left out.
QString shown_message(std::string_view bytes);

/// `text` with a place to break, U+200B, within words of more than `longest` characters.
QString breakable(const QString& text, int longest = 32);

/// What the user typed, as UTF-8.
std::string typed(const QString& text);

/// A size for people: "812 bytes", "1.4 MB".
QString shown_size(std::uint64_t bytes);

/// The file at the absolute path `path`, whose bytes need not be UTF-8.
QUrl file_url(std::string_view path);

}  // namespace quill::desktop
