#pragma once

#include "text/result.h"

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>

/// The bytes of a file as editable text, and back, without a change to any byte that the user did not touch.
///
/// A byte that cannot be shown is held in the text as half a surrogate pair, U+DC00 plus its value, which no valid text
/// contains and which is drawn as U+FFFD. Held bytes are: those invalid in the file's encoding, control and formatting
/// characters, and the characters that separate lines inside a QTextDocument. A line end that differs from the file's
/// usual one is held before the line break that shows it.
namespace quill::desktop {

/// The facts needed besides its characters to convert a text back to the bytes of its file.
struct TextForm {
    bool utf8 = true;                  ///< false: Windows-1252
    bool byte_order_mark = false;      ///< the file begins with U+FEFF, which is not in the text
    std::string_view line_end = "\n";  ///< the line end of most lines of the file

    bool operator==(const TextForm&) const = default;
};

struct FileText {
    TextForm form;
    QString text;              ///< lines end with U+000A
    std::size_t held = 0;      ///< number of held bytes, without line ends
    std::size_t odd_ends = 0;  ///< lines whose end differs from `form.line_end`
};

/// Reads `bytes`: as UTF-8 if at least half of the non-ASCII part is valid, else as Windows-1252.
FileText read_text(std::string_view bytes);

/// Returns the bytes of `text`, whose lines end with U+000A, U+2028 or U+2029. Fails with `unsupported` on a character
/// that the form cannot encode.
Result<std::string> text_bytes(QStringView text, const TextForm& form);

}  // namespace quill::desktop
