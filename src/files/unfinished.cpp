#include "files/unfinished.h"

#include <climits>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quill::files {
namespace {

constexpr std::string_view prefix = ".quill-";
constexpr std::string_view suffix = ".part";
constexpr std::time_t day = std::time_t{24} * 60 * 60;

/// Paths in a form that a signal handler can read: memory that never moves.
struct Slot {
    enum State : int { free, filling, filled };
    std::atomic<int> state{free};
    std::array<char, PATH_MAX> path{};
};
std::array<Slot, 128> slots;

/// Removes a whole number from the front of `s` and returns it.
std::optional<long> take_number(std::string_view& s) {
    long number = 0;
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), number);
    if (error != std::errc() || number < 0 || s.front() == '-') return std::nullopt;
    s.remove_prefix(static_cast<std::size_t>(end - s.data()));
    return number;
}

/// Returns the process that made the unfinished file `name`.
std::optional<pid_t> process_of(std::string_view name) {
    if (!name.starts_with(prefix) || !name.ends_with(suffix)) return std::nullopt;
    name = name.substr(0, name.size() - suffix.size());
    name.remove_prefix(std::min(prefix.size(), name.size()));
    const std::optional<long> process = name.empty() ? std::nullopt : take_number(name);
    if (!process || *process < 1 || *process > INT_MAX || !name.starts_with('-')) return std::nullopt;
    name.remove_prefix(1);
    if (name.empty() || !take_number(name) || !name.empty()) return std::nullopt;
    return static_cast<pid_t>(*process);
}

bool is_abandoned(int dir_fd, const char* name) {
    const std::optional<pid_t> process = process_of(name);
    if (!process || kill(*process, 0) == 0 || errno != ESRCH) return false;
    struct stat status = {};
    return fstatat(dir_fd, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == geteuid() && std::time(nullptr) - status.st_mtime > day;
}

}  // namespace

std::string unfinished_name(unsigned attempt) {
    std::string name(prefix);
    name.append(std::to_string(getpid())).append("-").append(std::to_string(attempt)).append(suffix);
    return name;
}

bool is_unfinished_name(std::string_view name) {
    return process_of(name).has_value();
}

void remove_abandoned(const std::string& dir) {
    const std::unique_ptr<DIR, int (*)(DIR*)> handle(opendir(dir.empty() ? "." : dir.c_str()), closedir);
    if (!handle) return;
    while (const dirent* entry = readdir(handle.get())) {
        if (is_abandoned(dirfd(handle.get()), entry->d_name)) unlinkat(dirfd(handle.get()), entry->d_name, 0);
    }
}

Unfinished::Unfinished(std::string path) : path_(std::move(path)) {
    if (path_.size() >= PATH_MAX) return;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        int expected = Slot::free;
        if (!slots[i].state.compare_exchange_strong(expected, Slot::filling)) continue;
        std::memcpy(slots[i].path.data(), path_.c_str(), path_.size() + 1);
        slots[i].state = Slot::filled;
        slot_ = static_cast<int>(i);
        return;
    }
}

Unfinished::Unfinished(Unfinished&& other) noexcept
    : path_(std::exchange(other.path_, {})), slot_(std::exchange(other.slot_, -1)) {}

Unfinished& Unfinished::operator=(Unfinished&& other) noexcept {
    std::swap(path_, other.path_);
    std::swap(slot_, other.slot_);
    return *this;
}

Unfinished::~Unfinished() {
    if (!path_.empty()) remove(path_.c_str());
    finish();
}

void Unfinished::finish() {
    path_.clear();
    if (slot_ >= 0) slots[static_cast<std::size_t>(std::exchange(slot_, -1))].state = Slot::free;
}

Result<Unfinished> make_output_directory(const std::string& path) {
    constexpr mode_t mode = 0755;
    if (mkdir(path.c_str(), mode) == 0) return Unfinished(path);
    if (errno == EEXIST) return Unfinished();
    return system_error(errno);
}

void remove_unfinished() noexcept {
    for (const Slot& slot : slots) {
        if (slot.state == Slot::filled && unlink(slot.path.data()) != 0) rmdir(slot.path.data());
    }
}

}  // namespace quill::files
