#include "cli/book_command.h"

#include "archive/changing/new_archive.h"
#include "archive/names/member_paths.h"
#include "cli/book_report.h"
#include "cli/interruption.h"
#include "cli/password_file.h"
#include "cli/progress.h"
#include "cli/usage.h"
#include "cli/zip_command.h"
#include "files/directory.h"
#include "files/path.h"
#include "htx/book/book_check.h"
#include "htx/book/book_geometry.h"
#include "htx/book/book_pages.h"
#include "htx/html/page_text.h"
#include "htx/picture_book/picture_book.h"
#include "htx/spider/link_hunt.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <numeric>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quill::cli {
namespace {

struct BookRequest {
    std::string book;
    std::string start_page;
    std::string root;  ///< directory of the files that a book of pages may include; empty: the start page's
    std::vector<std::string> pictures;
    std::string password_file;
    ResultOptions results;
    bool of_pictures = false;
    bool index = false;
};

// The window of a book made without a screen: the reader's own, and for pictures nearly all of a small screen.
constexpr htx::BookGeometry page_window = {9495, 6960, 0, 0};
constexpr htx::BookGeometry picture_window = {15360, 10920, 0, 0};

bool is_not_interrupted(const zip::Progress&) {
    return !Interruption::caught();
}

/// Fails if two files would become one member, so that one of them would be lost.
Status check_names(const std::vector<zip::NewMember>& members) {
    std::unordered_map<std::string, const zip::NewMember*> known;
    for (const zip::NewMember& member : members) {
        const auto [other, is_new] = known.try_emplace(member.name, &member);
        if (is_new) continue;
        return Error{ErrorCode::bad_argument, 0,
                     other->second->file + " would be a member of the same name, " + member.name};
    }
    return Done{};
}

/// Returns the start page and all pages and files that it leads to, as members with paths relative to its directory.
Result<std::vector<zip::NewMember>> linked_files(const BookRequest& request, BookReport& report) {
    if (!files::file_size(request.start_page)) return Error{ErrorCode::not_found, 0, "No such file"};
    if (htx::kind_of(request.start_page) != htx::FileKind::page) {
        return Error{ErrorCode::bad_argument, 0, "a start page's name ends in htm or html"};
    }
    const std::string path = files::resolved(request.start_page);
    const std::string root = request.root.empty() ? files::dir_of(path) : files::resolved(request.root);
    if (!path.starts_with(files::join(root, ""))) {
        return Error{ErrorCode::bad_argument, 0, "the start page is not in the directory of --root"};
    }
    htx::SiteFiles site(root);
    const htx::Hunt hunt = htx::hunt_links(site, {path.substr(files::join(root, "").size())},
                                           [](std::size_t) { return !Interruption::caught(); });
    if (hunt.end == htx::HuntEnd::too_many) report.incomplete(request.start_page);
    std::vector<zip::NewMember> members;
    for (const std::string& file : hunt.files) {
        if (file != htx::geometry_member) members.push_back({text::to_utf8(file), site.path_of(file)});
    }
    const std::string geometry(htx::geometry_member);
    members.push_back({geometry, geometry, format_geometry(page_window)});
    return members;
}

Result<std::vector<zip::NewMember>> picture_files(const BookRequest& request) {
    if (request.pictures.size() > htx::most_pages) {
        return Error{ErrorCode::limit, 0, "a picture book has at most 9999 pages"};
    }
    htx::PictureBook book;
    for (const std::string& file : request.pictures) book.pictures.push_back({file, htx::proposed_title(file)});
    book.order.resize(book.pictures.size());
    std::iota(book.order.begin(), book.order.end(), std::size_t{0});
    book.geometry = picture_window;
    book.has_index = request.index;
    return htx::files_of_book(book);
}

/// Fails for a picture that can't be read, before a book with a page for it is made.
Status check_pictures(const BookRequest& request) {
    for (const std::string& file : request.pictures) {
        if (!files::file_size(file)) return Error{ErrorCode::not_found, 0, file + " is not a file"};
    }
    return Done{};
}

ExitStatus create(const BookRequest& request, const Console& console) {
    BookReport report(console, request.results.style());
    const Interruption interruption;
    const Result<std::string> password = read_password(request.password_file);
    if (!password) return report.failed(request.password_file, password.error());
    if (!text::ends_with_ignoring_case(request.book, ".htx")) {
        return report.failed(request.book, {ErrorCode::bad_argument, 0, "a book's name ends in .htx"});
    }
    if (const Status pictures = check_pictures(request); !pictures)
        return report.failed(request.book, pictures.error());
    const Result<std::vector<zip::NewMember>> members =
        request.of_pictures ? picture_files(request) : linked_files(request, report);
    if (!members) return report.failed(request.of_pictures ? request.book : request.start_page, members.error());
    if (const Status distinct = check_names(*members); !distinct) return report.failed(request.book, distinct.error());
    std::vector<zip::MemberFailure> failures;
    const Status made = zip::make_archive(request.book, *members, {*password}, is_not_interrupted, failures);
    if (Interruption::caught()) return ExitStatus::failed;
    for (const auto& [file, error] : failures) report.fail(file, error);
    if (!made) return report.failed(request.book, made.error());
    for (const zip::NewMember& member : *members) {
        const bool is_in =
            std::none_of(failures.begin(), failures.end(), [&](const auto& f) { return f.first == member.file; });
        if (is_in) report.created(member.name);
    }
    return report.finish();
}

/// Calls f(archive, password) with the book opened; reports what prevents that.
template <class F>
ExitStatus with_book(const BookRequest& request, const Console& console, F f) {
    BookReport report(console, request.results.style());
    const Result<std::string> password = read_password(request.password_file);
    if (!password) return report.failed(request.password_file, password.error());
    const Result<zip::Archive> archive = zip::Archive::open(request.book);
    if (!archive) return report.failed(request.book, archive.error());
    for (const zip::Problem& problem : archive->problems()) report.problem(request.book, problem.text);
    f(*archive, *password, report);
    return report.finish();
}

std::string title_in(zip::MemberReader& reader, const zip::Member& member) {
    constexpr std::size_t most_bytes = 65536;
    std::string bytes;
    reader.read(member, [&](std::string_view piece) {
        bytes += piece;
        return bytes.size() < most_bytes;
    });
    return htx::title_of(htx::decode_page(bytes));
}

/// Lists the pages in their order, then the other files in that of the archive.
void list(const zip::Archive& archive, const std::string& password, BookReport& report) {
    std::vector<std::pair<std::string, std::size_t>> pages;
    std::vector<BookFile> others;
    for (std::size_t i = 0; i < archive.members().size(); ++i) {
        const zip::Member& member = archive.members()[i];
        if (member.is_directory()) continue;
        std::string name(member.name);
        if (htx::kind_of(name) == htx::FileKind::page) {
            pages.emplace_back(text::to_lower(name), i);
        } else {
            others.push_back({name, member.uncompressed_size, name == htx::geometry_member ? "window" : "file"});
        }
    }
    std::sort(pages.begin(), pages.end());
    zip::MemberReader reader(archive, password);
    for (std::size_t page = 0; page < pages.size(); ++page) {
        const zip::Member& member = archive.members()[pages[page].second];
        report.list({std::string(member.name), member.uncompressed_size, "page", page + 1, title_in(reader, member)});
    }
    for (const BookFile& file : others) report.list(file);
}

void check(const zip::Archive& archive, const std::string& password, BookReport& report) {
    const Interruption interruption;
    const htx::BookCheck checked = htx::check_book(archive, password, is_not_interrupted);
    for (const htx::DoubtfulPage& page : checked.doubtful) report.doubtful(page);
    for (const htx::BrokenLink& link : checked.broken) report.broken(link);
    report.checked(checked);
}

void add_password(CLI::App& command, BookRequest& request) {
    command.add_option("--password-file", request.password_file, "The password is this file's first line")
        ->type_name("FILE");
}

void add_create(CLI::App& book, Work& work) {
    auto* command = book.add_subcommand("create", "Make a book of web pages or of pictures");
    const auto request = std::make_shared<BookRequest>();
    auto* from = command->add_option("--from", request->start_page,
                                     "The page to begin with: the book holds it and all that it links to in its\n"
                                     "directory and below");
    from->type_name("PAGE");
    command
        ->add_option("--root", request->root,
                     "Include files from this directory and below, named relative to it, instead of the\n"
                     "page's own directory")
        ->type_name("DIR")
        ->needs(from);
    auto* pictures = command->add_flag("--pictures", request->of_pictures,
                                       "Make a page for each FILE, a picture; its name becomes the title");
    auto* files = command->add_option("FILE", request->pictures, "Pictures, in the order of their pages");
    command->add_flag("--index", request->index, "Begin a picture book with a page of small copies of all pictures")
        ->needs(pictures);
    command->add_option("--output", request->book, "The book to make; no file of that name may exist")
        ->required()
        ->type_name("BOOK");
    from->excludes(pictures);
    from->excludes(files);
    files->needs(pictures);
    pictures->needs(files);
    add_password(*command, *request);
    add_result_options(*command, request->results);
    command->callback([&work, request] {
        if (request->start_page.empty() && !request->of_pictures) throw CLI::RequiredError("--from or --pictures");
        work = [request](const Console& console) { return create(*request, console); };
    });
}

using ReadBook = void (*)(const zip::Archive&, const std::string&, BookReport&);

void add_reader(CLI::App& book, Work& work, const char* name, const char* about, ReadBook read) {
    auto* command = book.add_subcommand(name, about);
    const auto request = std::make_shared<BookRequest>();
    command->add_option("BOOK", request->book, "The book")->required();
    add_password(*command, *request);
    add_result_options(*command, request->results);
    command->callback([&work, request, read] {
        work = [request, read](const Console& console) { return with_book(*request, console, read); };
    });
}

constexpr const char* footer =
    "A book is a ZIP file of web pages and their pictures whose name ends in .htx. `create` prints the name of\n"
    "each file in the new book; `list` prints name, size, kind and title, pages first, in their order; `check`\n"
    "prints page, line and address of each link that leads nowhere in the book, and exits with 1 if there is one.\n"
    "Links to the web are not checked.";

}  // namespace

void add_book_command(CLI::App& app, Work& work) {
    auto* book = app.add_subcommand("book", "Make, list, extract and check HTX books");
    book->require_subcommand(1);
    book->footer(footer);
    fill_when_used(*book, [&work](CLI::App& group) {
        add_create(group, work);
        add_reader(group, work, "list", "List a book's pages and files", list);
        add_extract_command(group, work);
        add_reader(group, work, "check", "Find the broken links of a book", check);
    });
}

}  // namespace quill::cli
