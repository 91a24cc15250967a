#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quill::files {

/// Finds files with given bytes among those of a series of names: `name.ext`, `name (2).ext` and so on. Remembers what
/// it has read of a series, so that the time for many files of one name is proportional to their number.
class Copies {
  public:
    /// Returns the path of the first regular file in the series of `path` that has exactly `bytes`; nullopt if there is
    /// none. A series ends at the first free name.
    std::optional<std::string> find(const std::string& path, std::string_view bytes);

  private:
    /// The files of a series that have the same size.
    struct SameSize {
        std::vector<unsigned> unread;                                    ///< their numbers
        std::unordered_map<std::size_t, std::vector<unsigned>> by_hash;  ///< of their bytes
    };
    struct Row {
        unsigned seen = 0;  ///< how many names
        std::unordered_map<std::uint64_t, SameSize> by_size;
    };

    static void look(Row& row, const std::string& path);
    static void read(SameSize& files, const std::string& path);

    std::unordered_map<std::string, Row> rows_;
};

}  // namespace quill::files
