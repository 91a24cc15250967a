#pragma once

#include "htx/html/address.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quill::htx {

/// The files of one directory and its subdirectories, found by their names in pages.
class SiteFiles {
  public:
    /// `root` is the directory's path.
    explicit SiteFiles(const std::string& root);

    /// Returns the path from the root of the regular file that `address` means: one with exactly that name, else with
    /// the name as written in the page, else one that differs only in case or character set. Nullopt if there is none,
    /// or if a link that leads out of the directory is on its path.
    std::optional<std::string> find(const Address& address);

    /// Returns the path of a file that `find` has returned.
    std::string path_of(std::string_view file) const;

  private:
    std::optional<std::string> find_alike(const std::string& path);
    const std::unordered_map<std::string, std::string>& names_in(const std::string& directory);
    bool is_inside(const std::string& file) const;

    std::string root_;
    std::string real_root_;
    /// Names by their spelling in lower case and UTF-8, for each directory read.
    std::unordered_map<std::string, std::unordered_map<std::string, std::string>> listings_;
};

/// Returns a name in the form for comparisons that ignore case and character set.
std::string name_key(std::string_view name);

}  // namespace quill::htx
