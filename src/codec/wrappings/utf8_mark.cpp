#include "codec/wrappings/line_signs.h"
#include "codec/wrappings/rows.h"

#include <algorithm>

namespace quill::codec {
namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF";
constexpr std::size_t looked_at = 256;
constexpr std::string_view yenc_begin = "=ybegin ";
constexpr std::string_view yenc_end = "=yend ";

/// Returns true if the mark at `at` is where a text was joined to another: at the beginning of a line that can begin a
/// text. In rows of yEnc it may be data.
bool joins_texts(std::string_view text, std::size_t at) {
    if (at == 0 || (text[at - 1] != '\n' && text[at - 1] != '\r')) return false;
    std::string_view rest = text.substr(at + mark.size(), looked_at);
    const std::string_view line = next_line(rest).text;
    return is_data_mark(line) || is_header_line(line) || is_full_row(line) || line.starts_with("From ");
}

std::size_t last_of(std::string_view text, std::string_view sought) {
    const std::size_t at = text.rfind(sought);
    return at == std::string_view::npos ? 0 : at + 1;
}

}  // namespace

bool detect_utf8_marks(const Sample& sample) {
    return sample.any([](std::string_view window) { return window.find(mark, 1) != std::string_view::npos; });
}

void unwrap_utf8_marks(std::string_view wrapped, PlainText& out) {
    std::size_t kept = 0;
    std::size_t looked = 0;
    bool in_yenc = false;
    for (std::size_t at = 1; (at = wrapped.find(mark, at)) != std::string_view::npos && !out.stopped();
         at += mark.size()) {
        const std::string_view before = wrapped.substr(looked, at - looked);
        const std::size_t begun = last_of(before, yenc_begin);
        const std::size_t ended = last_of(before, yenc_end);
        if (begun != ended) in_yenc = begun > ended;
        looked = at;
        const bool begins_yenc = wrapped.substr(at + mark.size()).starts_with(yenc_begin);
        if ((in_yenc && !begins_yenc) || !joins_texts(wrapped, at)) continue;
        out.keep(kept, at);
        kept = at + mark.size();
    }
    out.keep(kept, wrapped.size());
}

}  // namespace quill::codec
