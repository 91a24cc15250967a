#pragma once

#include "decoder/text_file.h"
#include "files/temporary_file.h"
#include "text/reader.h"
#include "text/result.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// Rewritings of encoded text: even lines, a MIME header in front. They read the text from its beginning and keep no
/// part of it, so that one endless line costs no more than many short ones.
namespace quill::decoder {

/// Receives the next piece of a text; returns false to stop.
using Sink = std::function<bool(std::string_view piece)>;

/// Reads `text` and passes the rewritten text to `out`, piece by piece, until `out` returns false.
using Rewriting = std::function<void(const text::Source& text, const Sink& out)>;

constexpr std::size_t base64_line_length = 76;  ///< RFC 2045 6.8: the longest line of Base64

/// Joins the fields of `text`, each without two blanks at its end, and breaks the joined text into lines of 76
/// characters ended by CR LF. A field yields at most two lines; the rest is put in front of the next field, and after
/// the last field it becomes the last line, however long (an empty one if nothing is left).
void rewrap(const text::Source& text, const Sink& out);

/// Writes the four header lines (RFC 2045 5, 6; RFC 2183 2.3) for Base64 text that decodes as `name`. Escapes quotes
/// and backslashes in `name`; control characters become '_'.
void write_base64_header(std::string_view name, const Sink& out);

/// Copies the lines of `text` from the first one longer than 50 characters, each ended by CR LF.
void copy_from_first_long_line(const text::Source& text, const Sink& out);

/// Copies the lines of `text`, each broken at every `<BR>` (in capitals), which is dropped; each ended by CR LF.
void break_lines_at_tags(const text::Source& text, const Sink& out);

/// Copies the lines of `text`, without a `<BR>` (in capitals) at the end of a line.
void drop_tags_at_line_ends(const text::Source& text, const Sink& out);

/// Is called with the bytes written so far and the size of the text; returns false to stop.
using OnRewritten = std::function<bool(std::uint64_t written, std::uint64_t size)>;

/// Writes the rewriting of the file `input` as `output`, or under the next free name of its series, and returns the
/// path that it got. Fails with the system's reason, or with `cancelled` if `on_progress` stops it, leaving no new
/// file.
Result<std::string> write_rewritten(const std::string& input, const std::string& output, const Rewriting& rewriting,
                                    const OnRewritten& on_progress = {});

/// Makes a nameless temporary file of the rewriting of `text`. Fails in the same way.
Result<files::TemporaryFile> rewritten_copy(const TextFile& text, const Rewriting& rewriting,
                                            const OnRewritten& on_progress = {});

/// Returns true if the file at `path` holds exactly the rewriting of the file `input`.
bool holds_rewriting(const std::string& path, const std::string& input, const Rewriting& rewriting);

}  // namespace quill::decoder
