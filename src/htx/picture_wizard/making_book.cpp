#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"
#include "htx/making/wizard_files.h"
#include "htx/picture_wizard/making.h"
#include "htx/picture_wizard/steps.h"
#include "shell/long_run.h"

#include <algorithm>

namespace quill::htx {
namespace {

BookGeometry window_of_screen(const platform::Machine& machine) {
    constexpr int taskbar = 600;  // twips
    return {static_cast<float>(machine.screen_width()), static_cast<float>(machine.screen_height() - taskbar), 0, 0};
}

PictureBook book_of(const HtxWiz& w) {
    PictureBook book;
    for (std::size_t i = 0; i < w.List1.count(); ++i) {
        const std::string& recorded = w.List6.items().at(i);
        book.pictures.push_back({w.List1.items()[i], recorded.substr(1), w.captions.at(i), recorded.front() == '1'});
    }
    book.order = order_of(w);
    book.style = w.style;
    book.geometry = window_of_screen(w.context.platform.machine());
    book.has_index = w.index_page.checked;
    return book;
}

/// The place for the pages and the copies of the pictures besides the book.
enum class Beside { nowhere, same_directory, new_directory, cancel };

/// Returns true if a file can get `name` in `directory`: there is none, or it is the picture itself.
bool is_free(const std::string& directory, const zip::NewMember& member) {
    const std::string path = files::join(directory, member.name);
    return !files::exists(path) || (!member.text && files::same_file(path, member.file));
}

Beside ask_where(HtxWiz& w, const std::vector<zip::NewMember>& members) {
    if (!w.Option2(1).chosen) return Beside::nowhere;
    const auto taken =
        std::find_if(members.begin(), members.end(), [&](const auto& each) { return !is_free(w.Dir1.path, each); });
    if (taken == members.end()) return Beside::same_directory;
    const std::size_t answer = w.context.platform.choose(
        {.text = "There is already a file called " + taken->name +
                 " in this directory. The extra HTML files and copies of the pictures can go into a new directory.",
         .title = "Extra files",
         .answers = {"&Make a new directory for them", "Make &only the book", "&Cancel"},
         .default_answer = 0,
         .escape_answer = 2});
    return answer == 0 ? Beside::new_directory : answer == 1 ? Beside::nowhere : Beside::cancel;
}

Status write_beside(const std::string& directory, const zip::NewMember& member, const auto& watch) {
    const std::string path = files::join(directory, member.name);
    if (!member.text && files::same_file(path, member.file)) return Done{};
    Result<files::AtomicFile> out = files::AtomicFile::create(path);
    if (!out) return out.error();
    if (member.text) {
        out->write(*member.text);
    } else {
        const Result<files::MappedFile> source = files::MappedFile::open(member.file);
        if (!source) return source.error();
        const auto copied = out->copy(*source, 0, source->bytes().size(), watch);
        if (!copied) return copied.error();
    }
    const Result<std::string> published = out->publish(files::OnCollision::fail);
    return published ? Status(Done{}) : Status(published.error());
}

/// Writes the files of the book into `directory`; returns those that could not be written.
std::vector<zip::MemberFailure> write_all_beside(const std::string& directory,
                                                 const std::vector<zip::NewMember>& members, shell::LongRun& run) {
    std::vector<zip::MemberFailure> failures;
    for (std::size_t i = 0; i < members.size(); ++i) {
        const Status written =
            write_beside(directory, members[i], [&](std::uint64_t) { return run.goes_on(i, members.size()); });
        if (!written) failures.emplace_back(members[i].name, written.error());
        if (!run.goes_on(i + 1, members.size())) break;
    }
    return failures;
}

/// Returns the directory for the extra files, making a new one if requested.
Result<std::string> directory_beside(const HtxWiz& w, const std::string& book, Beside where) {
    constexpr unsigned mode = 0777;
    if (where == Beside::same_directory) return w.Dir1.path;
    return files::make_new_directory(book.substr(0, book.size() - std::string_view(".htx").size()) + " pages", mode);
}

Status write_extra_files(HtxWiz& w, const std::string& path, const std::vector<zip::NewMember>& members, Beside where,
                         shell::LongRun& run) {
    if (where == Beside::nowhere) return Done{};
    const Result<std::string> directory = directory_beside(w, path, where);
    if (!directory) return directory.error();
    run.now("Writing the extra files");
    const auto failures = write_all_beside(*directory, members, run);
    if (!failures.empty()) return Error{failures[0].second.code, 0, failures[0].first + ": " + failures[0].second.text};
    return Done{};
}

void take_as_selected(shell::Session& session, const HtxWiz& w, const std::string& path) {
    session.SelectedFile = files::name_of(path);
    session.SelectedDir = session.WorkDir = files::dir_of(path);
    session.ZipPassword = w.Text4.text;
}

}  // namespace

void make_book(HtxWiz& w, const std::string& path) {
    platform::Platform& platform = w.context.platform;
    const std::vector<zip::NewMember> members = files_of_book(book_of(w));
    const Beside where = ask_where(w, members);
    if (where == Beside::cancel) return;
    std::vector<zip::MemberFailure> failures;
    Status made = Done{}, extra = Done{};
    {
        shell::LongRun run(platform, {w, w.doing, w.bar, w.bar_done, w.stop, w.stop_wanted},
                           "Making " + files::name_of(path));
        const auto watch = [&](const zip::Progress& done) { return run.goes_on(done.bytes_done, done.bytes); };
        made = zip::make_archive(path, members, {w.Text4.text}, watch, failures);
        if (made) extra = write_extra_files(w, path, members, where, run);
    }
    if (!made) {
        if (made.error().code == ErrorCode::exists) return refuse_name(w, path);
        if (made.error().code != ErrorCode::cancelled)
            platform.warn(path + " could not be made: " + made.error().text + ".");
        return;
    }
    take_as_selected(w.context.session, w, path);
    report_left_out(platform, failures);
    if (!extra) platform.warn("The book is made, but not all of its extra files: " + extra.error().text + ".");
    finish(w);
}

void refuse_name(HtxWiz& w, const std::string& path) {
    w.Text5.text.clear();
    w.Command4.enabled = false;
    w.context.platform.message("A file named " + files::name_of(path) +
                               " already exists in this directory. Select a different name or change to a different "
                               "directory.");
}

void finish(HtxWiz& w) {
    w.context.platform.message("Done.");
    w.context.windows.unload<HtxWiz>();
}

}  // namespace quill::htx
