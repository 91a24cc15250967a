#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quill::tests {

/// A new empty directory that is the current one while this lives. Its end removes it with all that is in it and goes
/// back to where the process was.
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    /// The same in `parent`.
    explicit TemporaryDirectory(const std::string& parent);
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    /// Absolute, without links in it and without a slash at its end.
    const std::string& path() const { return path_; }

    /// The absolute path of `name` in the directory.
    std::string path(std::string_view name) const;

    /// Writes `bytes` as `name`, making directories that `name` has and replacing what is there; returns the path.
    std::string write(std::string_view name, std::string_view bytes) const;

    /// The bytes of `name`; a file that is not there fails the test.
    std::string read(std::string_view name) const;

    bool has(std::string_view name) const;

    /// Makes the directory `name`; returns its path.
    std::string make_directory(std::string_view name) const;

    /// The names of all files and directories in it, hidden ones too, sorted by bytes.
    std::vector<std::string> names() const;

  private:
    std::string path_;
    std::string previous_;
};

}  // namespace quill::tests
