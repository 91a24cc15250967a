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

/// A link of a book that leads nowhere in it.
struct BrokenLink {
    std::string page;      ///< the member that has it
    std::size_t line = 1;  ///< of the tag, in the page
    std::string address;   ///< as it is written
    bool climbs = false;   ///< it leads out of the book, to a path of the machine that it was written on
};

/// A page or style sheet that could not be read whole, so that some of its links may not have been checked.
struct DoubtfulPage {
    std::string page;
    zip::Content content;
};

/// What a check of a book has found.
struct BookCheck {
    std::size_t pages = 0;  ///< read, style sheets among them
    std::size_t links = 0;  ///< that lead into the book or should
    std::vector<BrokenLink> broken;
    std::vector<DoubtfulPage> doubtful;
    bool stopped = false;
};

/// Reads every page and style sheet of the book and looks for the files that its links mean. Addresses with a scheme or
/// a host of their own are not links into the book. Of a page, at most `most_page_bytes` are read.
BookCheck check_book(const zip::Archive& archive, const std::string& password, const zip::Watch& watch = {});

constexpr std::uint64_t most_page_bytes = std::uint64_t{64} << 20U;

}  // namespace quill::htx
