#include "decoder/yenc_run.h"

#include "decoder/library_run.h"
#include "decoder/text_file.h"
#include "shell/main_window.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quill::decoder {
namespace {

constexpr std::string_view header_mark = "=ybegi";

/// A line that identifies a newsreader that doubles dots at line starts.
struct Signature {
    std::string_view line_begins;
    std::size_t at;  ///< the position of its name in the line, from 0
    std::string_view newsreader;
};

constexpr std::array signatures = {
    Signature{"x-newsre", 14, "forte agen"}, Signature{"x-newsre", 14, "yenc-power"},
    Signature{"x-newspo", 14, "forte agen"}, Signature{"x-newspo", 14, "yenc-power"},
    Signature{"user-age", 12, "thoth"},
};

bool is_signature(std::string_view line) {
    return std::any_of(signatures.begin(), signatures.end(), [&](const Signature& signature) {
        return text::starts_with_ignoring_case(line, signature.line_begins) && line.size() > signature.at &&
               text::starts_with_ignoring_case(line.substr(signature.at), signature.newsreader);
    });
}

/// Returns true if a line before the first header identifies a newsreader that doubles dots.
bool doubles_dots(const std::string& path) {
    const Result<TextFile> file = TextFile::open(path);
    if (!file) return false;
    text::Reader reader = file->reader();
    while (const auto line = reader.line()) {
        if (line->starts_with(header_mark)) return false;
        if (is_signature(*line)) return true;
        file->release_behind(reader);
    }
    return false;
}

void decode(shell::Context& context, const std::string& path, bool dots_doubled) {
    auto& w = context.windows.load<shell::swit>();
    w.File2.refresh();
    decode_with_library(context, path, {.dots_doubled = dots_doubled});
    if (w.Picture2.visible) w.Label3.text = path;
}

}  // namespace

void findfirst(shell::Context& context, std::string& path) {
    const bool dotted = context.session.CommandLine.starts_with('&') || doubles_dots(path);
    dotted ? getbytestoo(context, path) : getbytes(context, path);
}

void getbytes(shell::Context& context, std::string& path) {
    decode(context, path, false);
}

void getbytestoo(shell::Context& context, std::string& path) {
    decode(context, path, true);
}

}  // namespace quill::decoder
