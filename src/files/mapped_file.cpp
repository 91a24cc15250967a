#include "files/mapped_file.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quill::files {
namespace {

const std::size_t page_size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));

/// Live mappings, for the SIGBUS handler alone: reading a mapped page that the file no longer has raises that signal.
struct GuardedRange {
    std::atomic<std::uintptr_t> begin{0};
    std::atomic<std::uintptr_t> end{0};
};
std::array<GuardedRange, 256> guarded;
struct sigaction previous_action;

/// Puts a page of zeros where the file has none any more; a SIGBUS from anywhere else takes its old course.
void on_bus_error(int, siginfo_t* info, void*) {
    const auto at = reinterpret_cast<std::uintptr_t>(info->si_addr);
    for (const GuardedRange& range : guarded) {
        if (at < range.begin.load() || at >= range.end.load()) continue;
        void* page = reinterpret_cast<void*>(at & ~(page_size - 1));
        if (mmap(page, page_size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED) return;
    }
    sigaction(SIGBUS, &previous_action, nullptr);
}

void install_handler() {
    static const bool installed = [] {
        struct sigaction action = {};
        action.sa_sigaction = on_bus_error;
        action.sa_flags = SA_SIGINFO;
        sigemptyset(&action.sa_mask);
        return sigaction(SIGBUS, &action, &previous_action) == 0;
    }();
    static_cast<void>(installed);
}

void guard(const void* data, std::size_t size) {
    install_handler();
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    for (GuardedRange& range : guarded) {
        std::uintptr_t free = 0;
        if (range.begin.compare_exchange_strong(free, begin)) {
            range.end = begin + size;
            return;
        }
    }
}

void unguard(const void* data) {
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    for (GuardedRange& range : guarded) {
        if (range.begin.load() != begin) continue;
        range.end = 0;
        range.begin = 0;
        return;
    }
}

}  // namespace

Result<MappedFile> MappedFile::open(const std::string& path) {
    MappedFile file;
    // O_NONBLOCK: opening a pipe that nobody writes to must not hang before fstat tells what it is.
    file.fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file.fd_ < 0) return system_error(errno);
    struct stat status = {};
    if (fstat(file.fd_, &status) != 0) return system_error(errno);
    if (S_ISDIR(status.st_mode)) return system_error(EISDIR);
    if (!S_ISREG(status.st_mode)) return Error{ErrorCode::unsupported, 0, "Not a regular file"};
    file.size_ = static_cast<std::size_t>(status.st_size);
    if (file.size_ == 0) return file;
    void* data = mmap(nullptr, file.size_, PROT_READ, MAP_PRIVATE, file.fd_, 0);
    if (data == MAP_FAILED) {
        file.size_ = 0;
        return system_error(errno);
    }
    file.data_ = static_cast<const char*>(data);
    madvise(data, file.size_, MADV_SEQUENTIAL);
    guard(data, file.size_);
    return file;
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      released_(std::exchange(other.released_, 0)) {}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
    if (this != &other) {
        close();
        fd_ = std::exchange(other.fd_, -1);
        data_ = std::exchange(other.data_, nullptr);
        size_ = std::exchange(other.size_, 0);
        released_ = std::exchange(other.released_, 0);
    }
    return *this;
}

MappedFile::~MappedFile() {
    close();
}

void MappedFile::close() {
    if (data_ != nullptr) {
        unguard(data_);
        munmap(const_cast<char*>(data_), size_);
    }
    if (fd_ >= 0) ::close(fd_);
}

std::size_t MappedFile::read(std::uint64_t offset, char* out, std::size_t size) const {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = pread(fd_, out + done, size - done, static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
    return done;
}

bool MappedFile::cut_short() const {
    struct stat status = {};
    return fd_ >= 0 && (fstat(fd_, &status) != 0 || static_cast<std::size_t>(status.st_size) < size_);
}

void MappedFile::release_before(std::size_t offset) const {
    constexpr std::size_t step = std::size_t{1} << 20;
    if (offset > size_) offset = size_;
    if (offset < released_) released_ = 0;  // the reader went back: what it touches anew is to be released anew
    if (offset - released_ < step) return;
    const std::size_t end = offset & ~(page_size - 1);
    madvise(const_cast<char*>(data_) + released_, end - released_, MADV_DONTNEED);
    released_ = end;
}

}  // namespace quill::files
