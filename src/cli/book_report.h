#pragma once

#include "cli/results.h"
#include "htx/book/book_check.h"
#include "text/result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::cli {

/// A file of a book, as `quill book list` shows it.
struct BookFile {
    std::string name;
    std::uint64_t size = 0;
    std::string_view kind;  ///< "page", "window" or "file"
    std::size_t page = 0;   ///< its number from 1; 0 for a file that is not a page
    std::string title = {};
};

/// Prints the results of the commands on books and summarises them.
class BookReport {
  public:
    BookReport(const Console& console, ReportStyle style) : console_(console), results_(console, style) {}

    void created(const std::string& member);
    void list(const BookFile& file);
    void broken(const htx::BrokenLink& link);

    /// Reports a page that could not be read completely.
    void doubtful(const htx::DoubtfulPage& page);
    /// Prints the number of links, for people.
    void checked(const htx::BookCheck& check);
    /// Reports that a page leads to more files than a book holds.
    void incomplete(std::string_view page);
    /// Reports a problem of the archive.
    void problem(std::string_view book, std::string_view text);

    void fail(std::string_view what, const Error& error);
    /// Reports the failure and ends the report.
    ExitStatus failed(std::string_view what, const Error& error);
    ExitStatus finish();

  private:
    void put(const std::string& line, const std::string& json);
    void complain(std::string_view what, std::string_view text);

    const Console& console_;
    Results results_;
    bool found_ = false;
    bool damaged_ = false;
    bool failed_ = false;
};

}  // namespace quill::cli
