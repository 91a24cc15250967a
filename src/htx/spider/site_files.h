#pragma once

#include "htx/html/address.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quill::htx {

/// The files of one directory and of all below it, found by the names that pages give them.
class SiteFiles {
  public:
    /// `root` is the directory's path.
    explicit SiteFiles(const std::string& root);

    /// Returns the path from the root of the regular file that `address` means: of exactly that name, else of the name
    /// as it is written in the page, else of one that differs in case or character set alone. Nullopt where there is
    /// none, or where it is reached by a link that leads out of the directory.
    std::optional<std::string> find(const Address& address);

    /// The path of a file that `find` has returned.
    std::string path_of(std::string_view file) const;

  private:
    std::optional<std::string> find_alike(const std::string& path);
    const std::unordered_map<std::string, std::string>& names_in(const std::string& directory);
    bool is_inside(const std::string& file) const;

    std::string root_;
    std::string real_root_;
    /// Names by their spelling in lower case and UTF-8, for each directory looked into.
    std::unordered_map<std::string, std::unordered_map<std::string, std::string>> listings_;
};

/// Returns a name as it is compared where case and character set do not count.
std::string name_key(std::string_view name);

}  // namespace quill::htx
