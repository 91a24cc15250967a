#include "decoder/triage.h"

#include "codec/recovery/file_signature.h"
#include "decoder/headerless.h"
#include "decoder/input_fault.h"
#include "decoder/library_run.h"
#include "decoder/mime_wrap.h"
#include "decoder/naming_window.h"
#include "decoder/repair_guide.h"
#include "decoder/text_file.h"
#include "decoder/yenc_run.h"
#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "shell/long_run.h"
#include "shell/main_window.h"
#include "text/ascii.h"

#include <climits>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace quill::decoder {
namespace {

constexpr int fields_searched_for_yenc = 50;
constexpr std::size_t longest_line_with_header = 55;  // longer first lines may be encoded text without a header
constexpr std::size_t longest_plain_header = 70;
constexpr std::size_t search_step = std::size_t{1} << 20;  // bytes between two looks at the clock

constexpr auto long_name_question =
    "   This file has an suspiciously long file name and could contain virus-like code. It is recommended that you "
    "load this mime-encoded file into a word processor and edit the file name of the attachment(s) within the text of "
    "this MIME file ((where it says filename = )) before decoding this file. Would you like to quit decoding this? "
    "(Choosing Yes is strongly recommended).";

/// The first lines of a text; missing ones are empty.
using FirstLines = std::array<std::string_view, 4>;

FirstLines first_lines(const TextFile& file) {
    FirstLines lines;
    text::Reader reader = file.reader();
    for (std::string_view& line : lines) line = reader.line().value_or("");
    return lines;
}

bool ends_like_jpeg(const std::string& path) {
    return text::ends_with_ignoring_case(path, "jpeg") || text::ends_with_ignoring_case(path, ".jpg");
}

/// Gives a picture a matching name that no other file has. On failure it keeps its own.
void rename_to_jpeg(std::string& path) {
    const std::string dir = files::dir_of(path);
    const std::string picture =
        files::join(dir, files::unique_name(dir.empty() ? "." : dir, files::name_of(path) + ".jpg"));
    if (files::rename_new(path, picture)) path = picture;
}

bool is_jpeg(const std::string& path) {
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return false;
    const codec::FileSignature* signature = codec::signature_of(file->bytes());
    return signature != nullptr && signature->extension == ".jpg";
}

bool begins_yenc(const TextFile& file) {
    text::Reader reader = file.reader();
    for (int i = 0; i < fields_searched_for_yenc; ++i) {
        const std::optional<std::string_view> field = reader.field();
        if (!field) return false;
        if (field->starts_with("=ybegi") && field->size() > std::string_view("=ybegi").size()) return true;
        file.release_behind(reader);
    }
    return false;
}

/// Returns true if the lines look like encoded text from the very first one, which may be one character longer than the
/// rest.
bool are_headerless(const FirstLines& lines) {
    const std::size_t first = lines[0].size();
    const std::size_t rest = lines[1].size();
    return first > longest_line_with_header && lines[2].size() == rest && lines[3].size() == rest &&
           (first == rest || first == rest + 1);
}

/// Returns true if the lines are full rows of UUE: the decoder knows them without a header, and a Base64 header above
/// them would be wrong.
bool are_uu_rows(const FirstLines& lines) {
    constexpr std::size_t full_row = 61;
    return std::all_of(lines.begin(), lines.end(), [](std::string_view line) {
        return line.size() == full_row && line.front() == 'M' &&
               std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '`'; });
    });
}

bool any_ends_in_tag(const FirstLines& lines) {
    return std::any_of(lines.begin(), lines.begin() + 3, [](std::string_view line) { return line.ends_with("<BR>"); });
}

/// Asks about each long header of a MIME part. Returns false if the user stops the search.
bool ask_about_long_headers(shell::Context& context, const TextFile& file) {
    shell::LongRun run(context.platform, run_panel(context.windows.load<shell::swit>()),
                       "Looking at " + files::name_of(context.session.EncodedPath));
    text::Reader reader = file.reader();
    std::size_t shown = 0;
    while (const std::optional<std::string_view> line = reader.line()) {
        if (reader.offset() - shown >= search_step) {
            file.release_behind(reader);
            shown = reader.offset();
            if (!run.goes_on(shown, file.bytes().size())) return false;
        }
        const bool is_long = line->size() > longest_plain_header;
        if (is_long && text::starts_with_ignoring_case(*line, "content-transf")) warn_of_long_name(context);
    }
    return true;
}

/// Runs the tests of a text in their order. Returns true if the library is still to decode the text, from `path`. A
/// text that cannot be read passes them all.
bool pass_triage(shell::Context& context, std::string& path) {
    shell::Session& session = context.session;
    const Result<TextFile> file = TextFile::open(path);
    if (!file) return true;
    if (begins_yenc(*file)) {
        findfirst(context, path);
        return false;
    }
    const FirstLines lines = first_lines(*file);
    if (are_headerless(lines) && !are_uu_rows(lines)) {
        int length = static_cast<int>(std::min<std::size_t>(lines[0].size(), INT_MAX));
        nohead(context, length);
        if (session.NamingTaken || context.windows.load<shell::swit>().stop_wanted) return false;
    }
    path = session.EncodedPath;
    return ask_about_long_headers(context, *file);
}

/// Decodes `path`, or a copy of it without `<BR>` at its line ends if its first lines end so.
void decode_readable(shell::Context& context, const std::string& path) {
    const Result<TextFile> file = TextFile::open(path);
    if (file && any_ends_in_tag(first_lines(*file))) {
        const Result<files::TemporaryFile> copy = [&] {
            shell::LongRun run(context.platform, run_panel(context.windows.load<shell::swit>()),
                               "Reading " + files::name_of(path));
            return rewritten_copy(*file, drop_tags_at_line_ends,
                                  [&](std::uint64_t done, std::uint64_t size) { return run.goes_on(done, size); });
        }();
        if (!copy && copy.error().code == ErrorCode::cancelled) return;
        if (copy) return decode_with_library(context, copy->path(), {.tags_removed = true});
    }
    decode_with_library(context, path);
}

/// Closes windows that ask about an earlier run's file: they would work on this one's.
void close_questions_of_earlier_run(controls::Windows& windows) {
    windows.unload<Form3>();
    const Form4* naming = windows.loaded<Form4>();
    if (naming != nullptr && naming->Frame1.visible) windows.unload<Form4>();
}

}  // namespace

void undec(shell::Context& context, std::string& path) {
    auto& w = context.windows.load<shell::swit>();
    path = files::absolute(path);
    const std::string directory = files::dir_of(path);
    context.session.EncodedPath = path;
    context.session.NamingTaken = false;
    w.stop_wanted = false;
    close_questions_of_earlier_run(context.windows);
    if (const std::string fault = input_fault(path); !fault.empty()) return context.platform.warn(fault);
    w.File2.set_directory(directory);
    w.File3.set_directory(directory);
    files::change_directory(directory);
    w.visible = true;
    context.platform.repaint(w);
    if (is_jpeg(path)) {
        if (!ends_like_jpeg(path)) rename_to_jpeg(path);
        const bool opened = context.platform.opener().open_with_default(path);
        const std::string name = files::name_of(path);
        context.platform.end_session(opened ? name + " is a picture. It was opened in the program for pictures."
                                            : name + " is a picture, but no program for pictures could be started.");
    }
    if (pass_triage(context, path)) decode_readable(context, path);
}

void warn_of_long_name(shell::Context& context) {
    if (!context.platform.ask({.text = long_name_question})) return;
    context.platform.end_session("You stopped decoding " + files::name_of(context.session.EncodedPath) +
                                 " because of a long name in it.");
}

}  // namespace quill::decoder
