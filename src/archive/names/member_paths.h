#pragma once

#include "archive/container/archive.h"
#include "archive/names/path_tree.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// The place of a member below the directory of an extraction.
struct MemberPath {
    std::string path;      ///< relative, parts between slashes, each a safe name; never empty; no slash at its end
    bool renamed = false;  ///< differs from the name in the archive by more than a slash at the end
};

/// A path for each member of an archive. None climbs, is absolute or leads through another member's file; no two are
/// equal, or differ only in the case of A to Z: the later of such members gets a number (`a (2).txt`). A path has at
/// most 100 directories; in deeper ones, and if there are more directories than an archive of so many members should
/// have, the innermost are left out. Time and memory are proportional to the length of the names.
class MemberPaths {
  public:
    explicit MemberPaths(const std::vector<Member>& members);

    std::size_t size() const { return ids_.size(); }
    MemberPath operator[](std::size_t member) const { return {tree_.path(ids_[member]), renamed_[member]}; }

    /// Returns how many look-ups and comparisons of names it took.
    std::uint64_t steps() const { return tree_.steps(); }

  private:
    PathTree tree_;
    std::vector<PathTree::Id> ids_;
    std::vector<bool> renamed_;
};

/// Returns the safe relative path of one member's name; empty if nothing of it is left.
std::string safe_path(std::string_view name);

}  // namespace quill::zip
