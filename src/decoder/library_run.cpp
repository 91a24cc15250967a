#include "decoder/library_run.h"

#include "codec/recovery/library.h"
#include "decoder/mime_wrap.h"
#include "decoder/new_files.h"
#include "decoder/normalise.h"
#include "decoder/repair_guide.h"
#include "decoder/run_summary.h"
#include "decoder/text_file.h"
#include "decoder/triage.h"
#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "shell/long_run.h"
#include "shell/main_window.h"
#include "text/ascii.h"
#include "text/count.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

namespace quill::decoder {
namespace {

constexpr int most_passes = 2;
constexpr std::size_t longest_plain_header = 70;

/// The result of a run of the library.
struct LibraryRun {
    std::vector<codec::Recovered> files;  ///< written, or not
    bool stopped = false;
};

/// Returns the names that the library gives to what it has found, each made unique.
std::string unique_names(shell::swit& w, codec::DecodingLibrary& library, std::int32_t count) {
    w.List1.clear();
    for (std::int32_t i = 0; i < count; ++i) {
        std::string name;
        library.GetEncodedFile(name, i);
        library.GetUniqueFileName(name);
        w.List1.add(name);
    }
    std::string names;
    for (const std::string& name : w.List1.items()) names += (names.empty() ? "" : ";") + name;
    return names;
}

/// Adds a problem to a file for the removed `<BR>`: if its lines are text, some of that may be lost.
void note_removed_tags(codec::Recovered& file) {
    const bool text = file.format == codec::Format::identity || file.format == codec::Format::quoted_printable;
    file.outcome.add({text ? codec::ProblemKind::tags_removed_from_text : codec::ProblemKind::tags_removed, 0});
}

/// Decodes all of `path` with the library.
LibraryRun run_library(shell::Context& context, const std::string& path, Reading reading) {
    auto& w = context.windows.load<shell::swit>();
    const std::string name = files::name_of(context.session.EncodedPath);
    shell::LongRun run(context.platform, run_panel(w), "Reading " + name);
    files::remove_abandoned(files::current_directory());
    codec::DecodingLibrary library;
    library.dots_doubled = reading.dots_doubled;
    library.on_progress = [&](std::uint64_t done, std::uint64_t total) { return run.goes_on(done, total); };
    run.goes_on(0, 1);
    const std::string names = unique_names(w, library, library.GetNumFilesToDecode(path));
    run.now("Decoding " + name);
    if (!run.stopped()) library.DecodeFile(path, names, 1);
    LibraryRun out{library.results(), run.stopped()};
    if (reading.tags_removed) std::for_each(out.files.begin(), out.files.end(), note_removed_tags);
    return out;
}

bool was_written(const codec::Recovered& file) {
    return !file.path.empty();
}

/// Returns true if the file was decoded but could not be stored.
bool is_unwritable(const codec::Recovered& file) {
    return !was_written(file) && !file.outcome.problems.empty() &&
           file.outcome.problems.front().kind == codec::ProblemKind::not_written;
}

/// Reports which files could not be written, and why. The repair guide handles files that could not even be decoded.
void say_unwritten(shell::Context& context, const std::vector<codec::Recovered>& files) {
    const auto first = std::find_if(files.begin(), files.end(), is_unwritable);
    if (first == files.end()) return;
    const auto count = static_cast<std::uint64_t>(std::count_if(first, files.end(), is_unwritable));
    std::string text =
        "The file " + first->name + " could not be written: " + std::string(text_of(first->outcome.problems.front()));
    if (count > 1) text += ". The same holds for " + text::counted(count - 1, "more file");
    context.platform.warn(text + ".");
}

/// Reports that a run ended early, if the list of its files would not show it.
void say_stopped(shell::Context& context, const LibraryRun& run) {
    const auto written = std::count_if(run.files.begin(), run.files.end(), was_written);
    if (!run.stopped || written == 0) return;
    context.platform.message("Decoding was stopped. " + text::counted(static_cast<std::uint64_t>(written), "file") +
                             " had been written by then.");
}

void give_up(shell::Context& context) {
    auto& w = context.windows.load<shell::swit>();
    w.Picture2.visible = false;
    shell::show_idle_captions(w);
    w.Label3.text.clear();
    show_repair_guide(context);
}

/// Returns the new files of a run, without the work file that is not a result.
std::vector<std::string> results_of(shell::Context& context, const LibraryRun& run) {
    std::vector<std::string> names = find_new_files(context.windows.load<shell::swit>(), run.files);
    std::erase_if(names, [&](const std::string& name) { return text::to_lower(name) == context.session.SkipName; });
    return names;
}

/// The copy that the second try reads.
struct EvenCopy {
    std::optional<files::TemporaryFile> file;  ///< absent if none could be made
    std::optional<HeadEnd> head;               ///< the end of the text's head, if it has one: there is no copy of it
    bool stopped = false;
};

EvenCopy make_even_copy(shell::Context& context, const std::string& path) {
    EvenCopy copy;
    const Result<TextFile> text = TextFile::open(path);
    if (!text) return copy;
    Rewriting rewriting = rewrap_body;
    if (!is_odd_line_length(sample_line_length(text->source()))) {
        rewriting = [&](const text::Source& source, const Sink& out) { copy.head = copy_lines(source, out); };
    }
    shell::LongRun run(context.platform, run_panel(context.windows.load<shell::swit>()), "Trying it another way");
    Result<files::TemporaryFile> file = rewritten_copy(
        *text, rewriting, [&](std::uint64_t done, std::uint64_t size) { return run.goes_on(done, size); });
    if (file && !copy.head) copy.file.emplace(std::move(*file));
    copy.stopped = run.stopped();
    return copy;
}

/// Names the files of a second try: a few in a box each, many in one.
void name_results(shell::Context& context, const std::vector<std::string>& names) {
    constexpr std::size_t few = 3, most_lines = 8;
    if (names.size() <= few) {
        for (const std::string& name : names) context.platform.message(name);
        return;
    }
    std::string text = text::counted(names.size(), "file") + " were decoded:\n";
    for (std::size_t i = 0; i < std::min(names.size(), most_lines); ++i) text += "\n" + names[i];
    if (names.size() > most_lines) text += "\nand " + text::counted(names.size() - most_lines, "other");
    context.platform.message(text);
}

void report_second_try(shell::Context& context, const LibraryRun& run) {
    say_unwritten(context, run.files);
    say_stopped(context, run);
    const std::vector<std::string> results = results_of(context, run);
    name_results(context, results);
    const bool explained = run.stopped || std::any_of(run.files.begin(), run.files.end(), is_unwritable);
    if (results.empty() && !explained) give_up(context);
}

void warn_of_long_dispositions(shell::Context& context, const std::string& path) {
    const Result<TextFile> file = TextFile::open(path);
    if (!file) return;
    text::Reader reader = file->reader();
    while (const std::optional<std::string_view> line = reader.line()) {
        file->release_behind(reader);
        if (line->size() <= longest_plain_header) continue;
        if (text::starts_with_ignoring_case(*line, "content-dispos")) warn_of_long_name(context);
    }
}

}  // namespace

void decode_with_library(shell::Context& context, const std::string& path, Reading reading) {
    auto& w = context.windows.load<shell::swit>();
    const LibraryRun run = run_library(context, path, reading);
    const std::vector<std::string> results = results_of(context, run);
    if (!results.empty()) w.Label3.text.clear();
    show_results(w, results, run.files, files::name_of(context.session.EncodedPath));
    if (!results.empty()) head_results(context, run.files);
    say_unwritten(context, run.files);
    say_stopped(context, run);
    const auto needs_no_other_try = [](const codec::Recovered& file) {
        return was_written(file) || is_unwritable(file);
    };
    if (run.stopped || std::any_of(run.files.begin(), run.files.end(), needs_no_other_try)) return;
    undectwo(context, path);
}

void undectwo(shell::Context& context, const std::string& path) {
    shell::Session& session = context.session;
    auto& w = context.windows.load<shell::swit>();
    w.Label3.text.clear();
    if (++session.DecodePass > most_passes) {
        session.DecodePass = 0;
        give_up(context);
        return;
    }
    EvenCopy even = make_even_copy(context, path);
    if (even.stopped) return;
    if (even.head) {
        skiptotail(context, path, even.head->offset);
        return;
    }
    w.visible = true;
    context.platform.repaint(w);
    report_second_try(context, run_library(context, even.file ? even.file->path() : path, {}));
}

void skiptotail(shell::Context& context, const std::string& path, std::uint64_t& offset) {
    offset += 2;
    const Result<TextFile> text = TextFile::open(path);
    if (!text) return undectwo(context, path);
    const Result<files::TemporaryFile> tail = rewritten_copy(
        *text, [&](const text::Source& source, const Sink& out) { out(tail_from(source.bytes, offset)); });
    if (!tail) return undectwo(context, path);
    warn_of_long_dispositions(context, tail->path());
    undectwo(context, tail->path());
}

}  // namespace quill::decoder
