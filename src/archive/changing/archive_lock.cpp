#include "archive/changing/archive_lock.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace quill::zip {
namespace {

/// Fails if a rename must not replace the file at `path`.
Status check_replaceable(const std::string& path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0) return errno == ENOENT ? Status(Done{}) : Status(system_error(errno));
    if (!S_ISREG(status.st_mode)) return Error{ErrorCode::unsupported, 0, "it is not a regular file"};
    if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return system_error(errno);
    return Done{};
}

}  // namespace

/// Returns false if another change has the file, or has just replaced it.
bool ArchiveLock::try_lock() {
    stamp_ = files::stamp_of(path_);
    if (!stamp_) return true;
    fd_ = files::Descriptor(open(path_.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (fd_.is_open() && flock(fd_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    return holds();
}

Result<ArchiveLock> ArchiveLock::take(const std::string& path, const Watch& watch) {
    constexpr std::chrono::milliseconds pause(20);
    constexpr std::chrono::seconds patience(60);
    const auto begun = std::chrono::steady_clock::now();
    ArchiveLock lock(path);
    while (true) {
        if (Status replaceable = check_replaceable(path); !replaceable) return replaceable.error();
        if (lock.try_lock()) return lock;
        if (watch && !watch({})) return Error{ErrorCode::cancelled, 0, "stopped"};
        if (!watch && std::chrono::steady_clock::now() - begun > patience) {
            return Error{ErrorCode::access, 0, "another program is changing it"};
        }
        std::this_thread::sleep_for(pause);
    }
}

}  // namespace quill::zip
