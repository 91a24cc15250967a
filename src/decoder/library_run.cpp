#include "decoder/library_run.h"

#include "codec/library.h"
#include "decoder/new_files.h"
#include "decoder/normalise.h"
#include "decoder/repair_guide.h"
#include "decoder/text_file.h"
#include "decoder/triage.h"
#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "shell/main_window.h"
#include "text/ascii.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

namespace quill::decoder {
namespace {

constexpr auto even_copy = "temp1.ntp";
constexpr auto tail_copy = "temp2.ntp";
constexpr int most_passes = 2;
constexpr std::size_t longest_plain_header = 70;
constexpr std::uint64_t shortest_with_progress = std::uint64_t{8} << 20;  // bytes

/// The path of a work file in the current directory; another than told where the user's own file has that name.
std::string work_file(const shell::Session& session, const std::string& name) {
    std::string path = files::join(files::current_directory(), name);
    if (files::same_file(path, session.EncodedPath))
        path = files::join(files::current_directory(), files::numbered_name(name, 2));
    return path;
}

/// Shows how far a long run has come, in the bar of the start panel.
void show_progress(shell::Context& context, std::uint64_t done, std::uint64_t total) {
    auto& w = context.windows.load<shell::swit>();
    if (total < shortest_with_progress) return;
    w.Picture5.visible = true;
    w.Picture6.left = static_cast<int>(static_cast<double>(w.Picture5.width) * static_cast<double>(done) /
                                       static_cast<double>(total));
    context.platform.repaint(w);
}

/// The names that the library gives to what it has found, each made unique.
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

/// Has the library decode all that `path` holds. Returns what it wrote and what it could not write.
std::vector<codec::Recovered> run_library(shell::Context& context, const std::string& path) {
    auto& w = context.windows.load<shell::swit>();
    w.pointer = controls::MousePointer::busy;
    context.platform.repaint(w);
    codec::DecodingLibrary library;
    library.on_progress = [&](std::uint64_t done, std::uint64_t total) {
        show_progress(context, done, total);
        return true;
    };
    const std::string names = unique_names(w, library, library.GetNumFilesToDecode(path));
    library.DecodeFile(path, names, 1);
    for (const codec::Recovered& file : library.results()) {
        if (!file.path.empty()) w.Outcomes.insert_or_assign(file.name, file.outcome);
    }
    w.Picture5.visible = false;
    w.pointer = controls::MousePointer::normal;
    return library.results();
}

bool was_written(const codec::Recovered& file) {
    return !file.path.empty();
}

/// Says which files could not be written, and why. Of what could not even be decoded the repair guide speaks.
void say_unwritten(shell::Context& context, const std::vector<codec::Recovered>& files) {
    for (const codec::Recovered& file : files) {
        if (was_written(file) || file.outcome.problems.empty()) continue;
        const codec::Problem& problem = file.outcome.problems.front();
        if (problem.kind != "not-written") continue;
        context.platform.message("The file " + file.name + " could not be written: " + problem.text + ".");
    }
}

void give_up(shell::Context& context) {
    auto& w = context.windows.load<shell::swit>();
    w.Picture2.visible = false;
    shell::show_idle_captions(w);
    w.Label3.text.clear();
    show_repair_guide(context);
}

/// The results of a run but the work file that is none.
std::vector<std::string> without(std::vector<std::string> names, const std::string& lower_case_name) {
    std::erase_if(names, [&](const std::string& name) { return text::to_lower(name) == lower_case_name; });
    return names;
}

/// Writes the even copy of `path` and makes `path` name it. A text with a head is not copied to its end; where the
/// head ends is returned.
std::optional<HeadEnd> write_even_copy(const shell::Session& session, std::string& path) {
    const Result<TextFile> file = TextFile::open(path);
    if (!file) return std::nullopt;
    std::optional<HeadEnd> head;
    Rewriting rewriting = rewrap_body;
    if (!is_odd_line_length(sample_line_length(file->source()))) {
        rewriting = [&](const text::Source& text, const Sink& out) { head = copy_lines(text, out); };
    }
    const Result<std::string> copy =
        write_rewritten(path, work_file(session, even_copy), rewriting, files::OnCollision::replace);
    if (copy && !head) path = *copy;
    return head;
}

void remove_work_files(const shell::Session& session) {
    files::remove_file(work_file(session, even_copy));
    files::remove_file(work_file(session, tail_copy));
}

void report_second_try(shell::Context& context) {
    const NewFiles found = find_new_files(context.windows.load<shell::swit>());
    const std::vector<std::string> results = without(found.names, context.session.SkipName);
    const bool only_work_file = found.change == Change::more_files && results.empty();
    if (found.change == Change::none || only_work_file) give_up(context);
    for (const std::string& name : results) context.platform.message(name);
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

void decode_with_library(shell::Context& context, const std::string& path) {
    auto& w = context.windows.load<shell::swit>();
    const std::vector<codec::Recovered> files = run_library(context, path);
    say_unwritten(context, files);
    if (std::none_of(files.begin(), files.end(), was_written)) {
        std::string tried = path;
        undectwo(context, tried);
        return;
    }
    const NewFiles found = find_new_files(w);
    if (found.change != Change::more_files) return;
    const std::vector<std::string> results = without(found.names, context.session.SkipName);
    if (!results.empty()) w.Label3.text.clear();
    show_results(w, results);
    rename_snapshots(w);
}

void undectwo(shell::Context& context, std::string& path) {
    shell::Session& session = context.session;
    auto& w = context.windows.load<shell::swit>();
    w.Label3.text.clear();
    if (++session.DecodePass > most_passes) {
        session.DecodePass = 0;
        give_up(context);
        return;
    }
    if (std::optional<HeadEnd> head = write_even_copy(session, path)) {
        skiptotail(context, path, head->offset);
        return;
    }
    files::change_directory(files::dir_of(path));
    w.visible = true;
    context.platform.repaint(w);
    const std::vector<codec::Recovered> files = run_library(context, path);
    if (std::any_of(files.begin(), files.end(), was_written)) say_unwritten(context, files);
    remove_work_files(session);
    report_second_try(context);
}

void skiptotail(shell::Context& context, const std::string& path, std::uint64_t& offset) {
    offset += 2;
    std::string tail = work_file(context.session, tail_copy);
    if (path != tail) {  // the tail of a tail is not taken
        static_cast<void>(write_rewritten(
            path, tail, [&](const text::Source& text, const Sink& out) { out(tail_from(text.bytes, offset)); },
            files::OnCollision::replace));
    }
    warn_of_long_dispositions(context, tail);
    undectwo(context, tail);
}

}  // namespace quill::decoder
