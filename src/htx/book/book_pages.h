#pragma once

#include "htx/html/address.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The contents of a book: its pages in order, and the files that addresses in them mean.
namespace quill::htx {

/// Sorts paths in the order of a book's pages: by their text, ignoring the case of A to Z.
void sort_as_pages(std::vector<std::string>& paths);

/// Returns the title that the contents screen shows for a page, given as UTF-8: from the last of its first 11 lines
/// that contains a <title>, the text after it up to a "<", or the whole next line if nothing follows. Replaces
/// character references.
std::string contents_title(std::string_view page);

/// The files of a book, found by the addresses in its pages.
class BookFiles {
  public:
    /// `paths` are relative, in the order in which `find` numbers them; empty ones are not found.
    explicit BookFiles(const std::vector<std::string>& paths);

    /// Returns the number of the file that `address` means: the one with exactly that path, else with the path as
    /// written in the page, else one that differs only in case or character set.
    std::optional<std::size_t> find(const Address& address) const;

  private:
    std::unordered_map<std::string, std::size_t> by_path_;
    std::unordered_map<std::string, std::size_t> by_key_;
};

}  // namespace quill::htx
