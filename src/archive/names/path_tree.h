#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Names of files and directories below one root, each part of a path stored once. Names that differ only in the case
/// of A to Z are the same. A look-up takes constant time; an entry needs its name and about 30 bytes.
class PathTree {
  public:
    using Id = std::uint32_t;
    static constexpr Id root = 0;
    static constexpr Id none = 0xFFFFFFFF;

    /// Makes an empty tree; `expected` is the expected number of entries.
    explicit PathTree(std::size_t expected = 0);

    /// Returns the entry `name` of `directory`, or `none`.
    Id find(Id directory, std::string_view name) const;
    /// Adds the entry `name`, of at most 255 bytes. REQUIRES: there is none of that name.
    Id add(Id directory, std::string_view name, bool is_directory);

    /// Adds `name` or the first free name of the series `name (2)`, `name (3)`, ... at constant cost, however long the
    /// series is and whatever names it shares with others. With `directory_will_do`, an existing directory of such a
    /// name is returned instead, and a new entry is a directory.
    Id add_numbered(Id directory, const std::string& name, bool directory_will_do, bool is_directory);

    /// Returns the directory `name` of `directory`, adding it if missing. If a file has that name, a numbered
    /// directory, always the same one, takes its place.
    Id enter(Id directory, const std::string& name);

    bool is_directory(Id id) const { return entries_[id].is_directory; }
    std::size_t size() const { return entries_.size(); }
    /// Returns the path from the root, without a slash at its beginning; empty for the root.
    std::string path(Id id) const;
    /// Returns how many names have been looked up, and compared with a name, so far.
    std::uint64_t steps() const { return steps_; }

    /// Frees what only `find` and `add` need, which must not be called afterwards.
    void forget_names_index();

  private:
    struct Entry {
        Id parent = none;
        std::uint32_t name_at = 0;      // in the blocks
        Id stand_in = none;             // for a file: the directory that takes its place
        std::uint32_t free_number = 0;  // for the first of a series' numbers of one length: none below is free
        std::uint8_t name_size = 0;
        bool is_directory = false;
    };

    std::string_view name_of(const Entry& entry) const;
    std::size_t slot_of(Id directory, std::string_view name) const;
    void grow();

    std::vector<Entry> entries_;
    std::vector<std::unique_ptr<char[]>> blocks_;  // the names; none crosses a block boundary
    std::uint32_t names_end_ = 0;
    std::vector<Id> slots_;  // a hash table with open addressing
    mutable std::uint64_t steps_ = 0;
};

}  // namespace quill::zip
