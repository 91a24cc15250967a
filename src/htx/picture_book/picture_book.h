#pragma once

#include "archive/changing/new_archive.h"
#include "htx/book/book_geometry.h"
#include "htx/picture_book/picture_page.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quill::htx {

/// A picture of a book, and the texts of its page in UTF-8.
struct BookPicture {
    std::string file;  ///< path
    std::string title;
    std::string caption = {};
    bool caption_above = true;
};

/// The contents of a picture book.
struct PictureBook {
    std::vector<BookPicture> pictures;  ///< in the chosen order
    std::vector<std::size_t> order;     ///< of the pages: numbers of pictures
    PageStyle style;
    BookGeometry geometry;
    bool has_index = false;  ///< the first page shows all pictures in small
};

/// Returns the files' names, with numbers for those that differ only in case: "a.jpg", "A (2).jpg".
std::vector<std::string> distinct_names(const std::vector<std::string>& files);

/// Returns the book's files: the pictures, a page for each of `order`, index.r29. Gives pictures with the same name
/// different ones. REQUIRES: `order` has at most `most_pages` numbers.
std::vector<zip::NewMember> files_of_book(const PictureBook& book);

/// Returns the proposed title for a picture: the description in its EXIF data, else its file's name without the ending,
/// with blanks for underscores. Reads the beginning of the file.
std::string proposed_title(const std::string& file);

}  // namespace quill::htx
