#pragma once

#include "htx/html/address.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// What a book consists of: its pages in order, and the files that addresses in them mean.
namespace quill::htx {

/// Sorts paths as a book's pages are: by their text, the case of A to Z ignored.
void sort_as_pages(std::vector<std::string>& paths);

/// Returns the title that the contents screen shows for a page, given as UTF-8: of the last of its first 11 lines that
/// has a <title>, what follows it up to a "<", or the whole next line where nothing follows. Character references are
/// replaced.
std::string contents_title(std::string_view page);

/// The files of a book, found by the addresses in its pages.
class BookFiles {
  public:
    /// `paths` are relative, in the order in which `find` numbers them; empty ones are not found.
    explicit BookFiles(const std::vector<std::string>& paths);

    /// Returns the number of the file that `address` means: of exactly that path, else of the path as it is written in
    /// the page, else of one that differs in case or character set alone.
    std::optional<std::size_t> find(const Address& address) const;

  private:
    std::unordered_map<std::string, std::size_t> by_path_;
    std::unordered_map<std::string, std::size_t> by_key_;
};

}  // namespace quill::htx
