#include "decoder/triage_rewrites.h"

#include "text/ascii.h"
#include "text/reader.h"

#include <optional>

namespace quill::decoder {
namespace {

constexpr std::size_t blanks_at_line_end = 2;
constexpr std::string_view line_break_tag = "<BR>";

bool put_line(std::string_view line, const Sink& out) {
    return out(line) && out("\r\n");
}

}  // namespace

void drop_two_characters_a_line(const text::Source& text, const Sink& out) {
    text::Reader reader(text);
    while (std::optional<std::string_view> line = reader.line()) {
        if (line->size() < blanks_at_line_end) continue;
        line->remove_suffix(blanks_at_line_end);
        if (!put_line(*line, out)) return;
    }
}

void drop_tags_at_line_ends(const text::Source& text, const Sink& out) {
    text::Reader reader(text);
    while (std::optional<std::string_view> line = reader.line()) {
        if (line->ends_with(line_break_tag)) line->remove_suffix(line_break_tag.size());
        if (!put_line(*line, out)) return;
    }
}

void fields_without_dispositions(const text::Source& text, const Sink& out) {
    text::Reader reader(text);
    while (const std::optional<std::string_view> field = reader.field()) {
        if (text::starts_with_ignoring_case(*field, "content-dispos")) continue;
        if (!put_line(*field, out)) return;
    }
}

}  // namespace quill::decoder
