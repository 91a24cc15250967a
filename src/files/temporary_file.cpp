#include "files/temporary_file.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace quill::files {

Result<TemporaryFile> TemporaryFile::create() {
    const char* directory = std::getenv("TMPDIR");
    std::string name = std::string(directory != nullptr && *directory != '\0' ? directory : "/tmp") + "/quill-XXXXXX";
    Descriptor fd(mkostemp(name.data(), O_CLOEXEC));
    if (!fd.is_open()) return system_error(errno);
    unlink(name.c_str());
    return TemporaryFile(std::move(fd));
}

Status TemporaryFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd_.get(), bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return system_error(errno);
        bytes.remove_prefix(static_cast<std::size_t>(n));
        size_ += static_cast<std::uint64_t>(n);
    }
    return Done{};
}

std::string TemporaryFile::path() const {
    return "/proc/self/fd/" + std::to_string(fd_.get());
}

Status TemporaryFile::begin_page() {
    const auto page = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    return write(std::string((page - size_ % page) % page, '\0'));
}

Result<Mapping> TemporaryFile::map(std::uint64_t begin) const {
    return Mapping::of(fd_.get(), static_cast<std::size_t>(size_ - begin), begin);
}

}  // namespace quill::files
