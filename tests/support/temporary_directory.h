#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quill::tests {

/// A new empty directory that is the current one while this lives. The destructor removes it with its contents and
/// returns to the previous directory.
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    /// Does the same in `parent`.
    explicit TemporaryDirectory(const std::string& parent);
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    /// Returns its path: absolute, without links in it and without a slash at its end.
    const std::string& path() const { return path_; }

    /// Returns the absolute path of `name` in the directory.
    std::string path(std::string_view name) const;

    /// Writes `bytes` as `name`, making directories in `name` and replacing an existing file; returns the path.
    std::string write(std::string_view name, std::string_view bytes) const;

    /// Returns the bytes of `name`; a missing file fails the test.
    std::string read(std::string_view name) const;

    bool has(std::string_view name) const;

    /// Makes the directory `name`; returns its path.
    std::string make_directory(std::string_view name) const;

    /// Returns the names of all files and directories in it, including hidden ones, sorted by bytes.
    std::vector<std::string> names() const;

  private:
    std::string path_;
    std::string previous_;
};

}  // namespace quill::tests
