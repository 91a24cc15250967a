#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quill::htx {

/// Returns a page or a style sheet as UTF-8. Its character set is that of its byte order mark, else the one that its
/// first 4096 bytes declare (<meta>, <?xml?>, @charset), else UTF-8 if the bytes are valid, else Windows-1252.
std::string decode_page(std::string_view bytes);

/// Returns the text of a page's title, with runs of blanks joined; empty if it has none. `page` is UTF-8.
std::string title_of(std::string_view page);

/// Returns the visible text of a page, a line for each paragraph, heading, list item or row. `page` is UTF-8.
std::vector<std::string> lines_of_page(std::string_view page);

/// Counts the lines of a text up to places in ascending order; lines end at LF, CR LF or CR.
class LineCounter {
  public:
    explicit LineCounter(std::string_view text) : text_(text) {}

    /// Returns the number of the line, from 1, that contains the byte at `offset`.
    std::size_t line_at(std::size_t offset);

  private:
    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
};

}  // namespace quill::htx
