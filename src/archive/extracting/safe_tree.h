#pragma once

#include "text/result.h"

#include <ctime>
#include <string>

namespace quill::zip {

/// Directories below one root, made and entered part by part without following a link.
///
/// The root itself may be reached by a link. Each thread has its own; it remembers the last directory entered.
class SafeTree {
  public:
    /// Fails with the system's reason if `root` is not a directory that can be entered.
    static Result<SafeTree> open(const std::string& root);

    SafeTree(SafeTree&& other) noexcept;
    SafeTree& operator=(SafeTree&& other) noexcept;
    ~SafeTree();

    /// Makes what is missing of the directory at `relative` (empty for the root; as `safe_path` gives it) with mode
    /// 0755 and enters it. Returns a descriptor of it that stays open until the next call. Fails where a part of it is
    /// a link or a file.
    Result<int> enter(const std::string& relative);

    /// Sets when the directory that was last entered was last changed.
    void set_time(std::time_t time) const;

  private:
    SafeTree() = default;
    void leave();

    int root_ = -1;
    int current_ = -1;  // `root_` itself while in it
    std::string relative_;
};

}  // namespace quill::zip
