#include "archive/extracting/safe_tree.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quill::zip {
namespace {

constexpr mode_t directory_mode = 0755;

/// Opens the directory `name` in `parent`, making it if it is missing; returns -1 with errno set on failure.
int enter_one(int parent, const std::string& name) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const int fd = openat(parent, name.c_str(), flags);
    if (fd >= 0 || errno != ENOENT) return fd;
    if (mkdirat(parent, name.c_str(), directory_mode) != 0 && errno != EEXIST) return -1;
    return openat(parent, name.c_str(), flags);
}

}  // namespace

Result<SafeTree> SafeTree::open(const std::string& root) {
    SafeTree tree;
    tree.root_ = ::open(root.empty() ? "." : root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (tree.root_ < 0) return system_error(errno);
    tree.current_ = tree.root_;
    return tree;
}

SafeTree::SafeTree(SafeTree&& other) noexcept
    : root_(std::exchange(other.root_, -1)),
      current_(std::exchange(other.current_, -1)),
      relative_(std::move(other.relative_)) {}

SafeTree& SafeTree::operator=(SafeTree&& other) noexcept {
    std::swap(root_, other.root_);
    std::swap(current_, other.current_);
    std::swap(relative_, other.relative_);
    return *this;
}

SafeTree::~SafeTree() {
    leave();
    if (root_ >= 0) close(root_);
}

void SafeTree::leave() {
    if (current_ != root_) close(current_);
    current_ = root_;
    relative_.clear();
}

Result<int> SafeTree::enter(const std::string& relative) {
    if (relative != relative_) {
        leave();
        std::string_view rest = relative;
        while (!rest.empty()) {
            const std::size_t slash = std::min(rest.find('/'), rest.size());
            const int next = enter_one(current_, std::string(rest.substr(0, slash)));
            const int reason = errno;
            if (current_ != root_) close(current_);
            current_ = next >= 0 ? next : root_;
            if (next < 0) return system_error(reason);
            rest.remove_prefix(std::min(slash + 1, rest.size()));
        }
        relative_ = relative;
    }
    return current_;
}

void SafeTree::set_time(std::time_t time) const {
    const timespec times[2] = {{time, 0}, {time, 0}};
    futimens(current_, times);
}

}  // namespace quill::zip
