#include "files/mapped_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quill::files {
namespace {

const std::size_t page_size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));

}  // namespace

Result<MappedFile> MappedFile::open(const std::string& path) {
    MappedFile file;
    // O_NONBLOCK: opening a pipe without a writer must not hang before fstat identifies it.
    file.fd_ = Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.fd_.is_open()) return system_error(errno);
    struct stat status = {};
    if (fstat(file.fd_.get(), &status) != 0) return system_error(errno);
    if (S_ISDIR(status.st_mode)) return system_error(EISDIR);
    if (!S_ISREG(status.st_mode)) return Error{ErrorCode::unsupported, 0, "Not a regular file"};
    file.written_ = status.st_mtim;
    Result<Mapping> mapping = Mapping::of(file.fd_.get(), static_cast<std::size_t>(status.st_size));
    if (!mapping) return mapping.error();
    file.mapping_ = *std::move(mapping);
    return file;
}

std::size_t MappedFile::read(std::uint64_t offset, char* out, std::size_t size) const {
    if (!fd_.is_open()) return offset < bytes().size() ? bytes().copy(out, size, offset) : 0;
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = pread(fd_.get(), out + done, size - done, static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
    return done;
}

bool MappedFile::cut_short() const {
    struct stat status = {};
    return fd_.is_open() &&
           (fstat(fd_.get(), &status) != 0 || static_cast<std::size_t>(status.st_size) < bytes().size());
}

bool MappedFile::changed() const {
    struct stat status = {};
    if (!fd_.is_open()) return false;
    return fstat(fd_.get(), &status) != 0 || static_cast<std::size_t>(status.st_size) != bytes().size() ||
           status.st_mtim.tv_sec != written_.tv_sec || status.st_mtim.tv_nsec != written_.tv_nsec;
}

Error changed_while_read() {
    return {ErrorCode::io, 0, "The input changed while it was read"};
}

void MappedFile::release_before(std::size_t offset) const {
    constexpr std::size_t step = std::size_t{1} << 20;
    offset = std::min(offset, bytes().size());
    if (offset < released_) released_ = 0;  // the reader went back: release again what it touches
    if (offset - released_ < step) return;
    const std::size_t end = offset & ~(page_size - 1);
    madvise(const_cast<char*>(bytes().data()) + released_, end - released_, MADV_DONTNEED);
    released_ = end;
}

}  // namespace quill::files
