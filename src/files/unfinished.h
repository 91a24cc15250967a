#pragma once

#include "text/result.h"

#include <string>
#include <string_view>

/// Work files that have a name before they are complete: their names, and their removal.
namespace quill::files {

/// Returns the name of this process's unfinished file number `attempt`: hidden, and containing the process id.
std::string unfinished_name(unsigned attempt);

/// Returns true for names made by unfinished_name, in this process or in another.
bool is_unfinished_name(std::string_view name);

/// Removes unfinished files of killed runs from `dir`: regular files of this user, older than a day, whose process is
/// gone.
void remove_abandoned(const std::string& dir);

/// A work file, or a directory made for output, that is removed with this object unless it is finished first.
class Unfinished {
  public:
    Unfinished() = default;

    /// Takes charge of `path`, which this process has just created.
    explicit Unfinished(std::string path);
    Unfinished(Unfinished&& other) noexcept;
    Unfinished& operator=(Unfinished&& other) noexcept;
    ~Unfinished();

    /// Returns an empty path if there is nothing to remove.
    const std::string& path() const { return path_; }

    /// Keeps the path from now on.
    void finish();

  private:
    std::string path_;
    int slot_ = -1;  ///< its entry for the signal handler; -1: none
};

/// Makes the directory `path` for output if it does not exist. The result removes the new directory if it stays empty.
Result<Unfinished> make_output_directory(const std::string& path);

/// Removes unfinished files and empty unfinished directories, for a signal handler that is about to end the process.
/// Async-signal-safe.
void remove_unfinished() noexcept;

}  // namespace quill::files
