#include "files/atomic_file.h"

#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quill::files {
namespace {

constexpr mode_t output_mode = 0644;
constexpr unsigned most_name_attempts = 100'000;
constexpr unsigned tried_one_by_one = 8;

/// A name for the unfinished file: hidden, and told apart from those of other processes and earlier files of this one.
std::string temporary_name(unsigned attempt) {
    return ".quill-" + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".part";
}

bool write_all(int fd, std::string_view bytes, std::uint64_t at) {
    while (!bytes.empty()) {
        const ssize_t n = pwrite(fd, bytes.data(), bytes.size(), static_cast<off_t>(at));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            if (n == 0) errno = ENOSPC;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
        at += static_cast<std::uint64_t>(n);
    }
    return true;
}

/// Makes a rename last over a power cut. Its failure takes nothing away that the user had.
void flush_directory(const std::string& dir) {
    const int fd = open(dir.empty() ? "." : dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

/// In the row of numbered names, of which number `taken` is taken: one that is taken and has a free one behind it.
/// Looks at few of many, as thousands of files may want the same name; names that are taken further on do no harm.
unsigned last_taken_number(const std::string& dir, const std::string& name, unsigned taken) {
    const auto is_taken = [&](unsigned n) { return exists(join(dir, numbered_name(name, n))); };
    unsigned free = taken * 2;
    for (; free <= most_name_attempts && is_taken(free); free *= 2) taken = free;
    free = std::min(free, most_name_attempts + 1);
    while (free - taken > 1) {
        const unsigned middle = taken + (free - taken) / 2;
        (is_taken(middle) ? taken : free) = middle;
    }
    return taken;
}

}  // namespace

Result<AtomicFile> AtomicFile::create(const std::string& path) {
    AtomicFile file;
    file.path_ = path;
    const std::string dir = dir_of(path);
    for (unsigned attempt = 0; attempt < most_name_attempts; ++attempt) {
        file.temporary_ = join(dir, temporary_name(attempt));
        file.fd_ = open(file.temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, output_mode);
        if (file.fd_ >= 0) return file;
        if (errno != EEXIST) break;
    }
    const Error error = system_error(errno);
    file.temporary_.clear();
    return error;
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : path_(std::move(other.path_)),
      temporary_(std::exchange(other.temporary_, {})),
      fd_(std::exchange(other.fd_, -1)),
      size_(other.size_),
      failed_(other.failed_),
      error_(std::move(other.error_)) {}

AtomicFile& AtomicFile::operator=(AtomicFile&& other) noexcept {
    if (this != &other) {
        discard();
        path_ = std::move(other.path_);
        temporary_ = std::exchange(other.temporary_, {});
        fd_ = std::exchange(other.fd_, -1);
        size_ = other.size_;
        failed_ = other.failed_;
        error_ = std::move(other.error_);
    }
    return *this;
}

AtomicFile::~AtomicFile() {
    discard();
}

void AtomicFile::discard() {
    if (fd_ >= 0) close(std::exchange(fd_, -1));
    if (!temporary_.empty()) unlink(std::exchange(temporary_, {}).c_str());
}

bool AtomicFile::fail(int number) {
    failed_ = true;
    error_ = system_error(number);
    return false;
}

bool AtomicFile::write(std::string_view bytes) {
    return write_at(size_, bytes);
}

bool AtomicFile::write_at(std::uint64_t offset, std::string_view bytes) {
    if (failed_) return false;
    if (!write_all(fd_, bytes, offset)) return fail(errno);
    if (offset + bytes.size() > size_) size_ = offset + bytes.size();
    return true;
}

Result<MappedFile> AtomicFile::read_back() const {
    if (failed_) return error_;
    return MappedFile::open(temporary_);
}

Result<std::string> AtomicFile::publish(OnCollision on_collision, Durability durability) {
    if (!failed_ && durability == Durability::flushed && fsync(fd_) != 0) fail(errno);
    if (!failed_ && close(std::exchange(fd_, -1)) != 0) fail(errno);
    if (failed_) {
        discard();
        return error_;
    }
    const std::string dir = dir_of(path_);
    const std::string name = name_of(path_);
    std::string target = path_;
    Status renamed = Done{};
    if (on_collision == OnCollision::replace) {
        renamed = rename_over(temporary_, target);
    } else {
        const unsigned most = on_collision == OnCollision::choose_name ? most_name_attempts : 1;
        for (unsigned n = 1; n <= most; ++n) {
            target = join(dir, numbered_name(name, n));
            renamed = rename_new(temporary_, target);
            if (renamed || renamed.error().code != ErrorCode::exists) break;
            if (n == tried_one_by_one && most > 1) n = last_taken_number(dir, name, n);
        }
    }
    if (!renamed) {
        discard();
        return renamed.error();
    }
    temporary_.clear();
    if (durability == Durability::flushed) flush_directory(dir);
    return target;
}

Status AtomicFile::publish_as_rewrite() {
    struct stat old = {};
    constexpr mode_t permissions = 0777;
    if (!failed_ && stat(path_.c_str(), &old) == 0 && fchmod(fd_, old.st_mode & permissions) != 0) fail(errno);
    const Result<std::string> published = publish(OnCollision::replace, Durability::flushed);
    if (!published) return published.error();
    return Done{};
}

Status rewrite_file(const std::string& path, std::string_view bytes) {
    Result<AtomicFile> file = AtomicFile::create(path);
    if (!file) return file.error();
    file->write(bytes);
    return file->publish_as_rewrite();
}

}  // namespace quill::files
