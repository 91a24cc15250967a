#pragma once

#include "text/result.h"

#include <string>
#include <string_view>

/// Work files that carry a name before they are whole: what they are called, and how none of them stays.
namespace quill::files {

/// Returns the name of this process's unfinished file number `attempt`: hidden, with the process in it.
std::string unfinished_name(unsigned attempt);

/// Returns true for names that unfinished_name gives, in this process or in another.
bool is_unfinished_name(std::string_view name);

/// Removes from `dir` the unfinished files that killed runs left: regular files of this user, older than a day, of a
/// process that is gone.
void remove_abandoned(const std::string& dir);

/// A work file, or a directory made for output, that goes with this object unless it is finished before.
class Unfinished {
  public:
    Unfinished() = default;

    /// Takes charge of `path`, which this process has just made.
    explicit Unfinished(std::string path);
    Unfinished(Unfinished&& other) noexcept;
    Unfinished& operator=(Unfinished&& other) noexcept;
    ~Unfinished();

    /// Empty where there is nothing to remove.
    const std::string& path() const { return path_; }

    /// Leaves the path alone from now on.
    void finish();

  private:
    std::string path_;
    int slot_ = -1;  ///< where a signal handler finds it; -1: nowhere
};

/// Makes the directory `path` for output unless there is one. The result takes away what was made if it stays empty.
Result<Unfinished> make_output_directory(const std::string& path);

/// Removes what is unfinished (of directories those that are empty), for a signal handler that is about to end the
/// process. Async-signal-safe.
void remove_unfinished() noexcept;

}  // namespace quill::files
