#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quill::encoder {

/// The numbers of the parts that a merge joins, and the expected number of parts.
class PartNumbers {
  public:
    /// Adds the next part: its number from 1, and the total that it states, 0 if it states none.
    void add(unsigned number, unsigned total);

    /// Adds the parts in `text`, the next file of a merge: by their `=ybegin` lines, else by the labels and subjects of
    /// pieces in it, else by the number in the file's name. Names count only if no text has a number, all of them are
    /// alike, and the lowest number is 0 or 1.
    void add_parts_of(std::string_view text, const std::string& path);

    /// Returns the missing numbers below the highest one, or up to the total.
    std::vector<unsigned> missing() const;

    /// Returns false if a part was added before one with a lower number.
    bool in_order() const;

  private:
    /// Numbers in the order added.
    struct Row {
        std::set<unsigned> numbers;
        unsigned last = 0;
        bool in_order = true;

        void add(unsigned number);
    };

    bool add_yenc_parts(std::string_view text);
    void add_pieces(std::string_view text);
    void add_name(const std::string& path);
    const Row* row() const;

    Row stated_;
    unsigned total_ = 0;
    Row named_;                    ///< by the names of the files
    std::set<std::string> stems_;  ///< these names without the numbers; a name without a number is kept whole
};

}  // namespace quill::encoder
