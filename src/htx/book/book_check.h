#pragma once

#include "archive/container/archive.h"
#include "archive/container/member_reader.h"
#include "archive/progress.h"
#include "htx/html/address.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace quill::htx {

/// A link in a book to a missing file.
struct BrokenLink {
    std::string page;      ///< the member that contains it
    std::size_t line = 1;  ///< of the tag, in the page
    std::string address;   ///< as written
    bool climbs = false;   ///< it leads out of the book, to a path of the machine where it was written
};

/// A page or style sheet that could not be read completely, so that some of its links may not have been checked.
struct DoubtfulPage {
    std::string page;
    zip::Content content;
};

/// The result of checking a book.
struct BookCheck {
    std::size_t pages = 0;  ///< pages read, including style sheets
    std::size_t links = 0;  ///< those that lead into the book or should
    std::vector<BrokenLink> broken;
    std::vector<DoubtfulPage> doubtful;
    bool stopped = false;
};

/// Reads every page and style sheet of the book and looks up the files that its links mean. Addresses with a scheme or
/// a host are not links into the book. At most `most_page_bytes` of a page are read.
BookCheck check_book(const zip::Archive& archive, const std::string& password, const zip::Watch& watch = {});

constexpr std::uint64_t most_page_bytes = std::uint64_t{64} << 20U;

}  // namespace quill::htx
