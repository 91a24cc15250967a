#pragma once

#include <cstddef>
#include <optional>
#include <string>

/// Where readers left their books: a small text file in the user's state directory, a line for each book with the MD5
/// digest of its path and three numbers. Titles, names and texts are never in it.
namespace quill::htx {

/// Where the user was in a book.
struct BookPlace {
    std::size_t page = 0;   ///< from 0
    std::size_t place = 0;  ///< as Browser::place counts
    int zoom = 100;         ///< percent

    bool operator==(const BookPlace&) const = default;
};

constexpr int least_zoom = 30, most_zoom = 400;
constexpr std::size_t most_books_remembered = 500;

/// Returns `$XDG_STATE_HOME/quillbright/books`, else that below `~/.local/state`; empty where there is no home.
std::string book_memory_file();

/// Returns where the book at the path `book` was left, or nullopt. Lines that make no sense are passed over, and no
/// more of the file is read than `remember_place` writes.
std::optional<BookPlace> remembered_place(const std::string& file, const std::string& book);

/// Writes where the book was left, and forgets the books that were left longest ago beyond `most_books_remembered`.
/// False where the file can't be written; it is then as it was.
bool remember_place(const std::string& file, const std::string& book, const BookPlace& place);

}  // namespace quill::htx
