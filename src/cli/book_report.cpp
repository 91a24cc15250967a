#include "cli/book_report.h"

#include "cli/json.h"
#include "htx/spider/link_hunt.h"
#include "text/count.h"
#include "text/printable.h"

#include <ostream>

namespace quill::cli {

using text::printable;

void BookReport::put(const std::string& line, const std::string& json) {
    found_ = true;
    results_.put(results_.are_json() ? json : line);
}

void BookReport::complain(std::string_view what, std::string_view text) {
    console_.err << "quill: " << printable(what) << ": " << printable(text) << '\n';
}

void BookReport::created(const std::string& member) {
    put(printable(member), json_object({{"name", json_string(member)}}));
}

void BookReport::list(const BookFile& file) {
    put(printable(file.name) + "\t" + std::to_string(file.size) + "\t" + std::string(file.kind) + "\t" +
            printable(file.title),
        json_object({{"name", json_string(file.name)},
                     {"size", std::to_string(file.size)},
                     {"kind", json_string(file.kind)},
                     {"page", file.page == 0 ? "null" : std::to_string(file.page)},
                     {"title", json_or_null(file.title)}}));
}

void BookReport::broken(const htx::BrokenLink& link) {
    damaged_ = true;
    put(printable(link.page) + "\t" + std::to_string(link.line) + "\t" + printable(link.address) + "\t" +
            (link.climbs ? "outside" : "missing"),
        json_object({{"page", json_string(link.page)},
                     {"line", std::to_string(link.line)},
                     {"address", json_string(link.address)},
                     {"problem", json_string(link.climbs ? "outside" : "missing")}}));
}

void BookReport::doubtful(const htx::DoubtfulPage& page) {
    damaged_ = true;
    const auto& problems = page.content.problems;
    complain(page.page, problems.empty() ? "it can't be read completely" : problems.front().text);
}

void BookReport::checked(const htx::BookCheck& check) {
    if (check.pages != 0) found_ = true;
    if (results_.style() != ReportStyle::lines) return;
    console_.err << "quill: " << text::counted(check.pages, "page") << ", " << text::counted(check.links, "link")
                 << ", " << check.broken.size() << " broken\n";
}

void BookReport::incomplete(std::string_view page) {
    damaged_ = true;
    complain(page, "it leads to more than " + text::grouped(htx::most_hunted_files) +
                       " files; the book holds the first of them");
}

void BookReport::problem(std::string_view book, std::string_view text) {
    damaged_ = true;
    complain(book, text);
}

void BookReport::fail(std::string_view what, const Error& error) {
    failed_ = true;
    complain(what, error.text);
}

ExitStatus BookReport::failed(std::string_view what, const Error& error) {
    fail(what, error);
    return finish();
}

ExitStatus BookReport::finish() {
    results_.finish();
    if (failed_) return ExitStatus::failed;
    if (damaged_) return ExitStatus::damaged;
    if (found_) return ExitStatus::good;
    if (results_.style() == ReportStyle::lines) console_.err << "quill: the book has no pages\n";
    return ExitStatus::nothing;
}

}  // namespace quill::cli
