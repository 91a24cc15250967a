#include "files/file_stamp.h"

#include <sys/stat.h>

namespace quill::files {
namespace {

std::optional<FileStamp> regular_file(const struct stat& s) {
    if (!S_ISREG(s.st_mode)) return std::nullopt;
    return FileStamp{s.st_dev,         s.st_ino,          static_cast<std::uint64_t>(s.st_size),
                     s.st_mtim.tv_sec, s.st_mtim.tv_nsec, s.st_ctim.tv_sec,
                     s.st_ctim.tv_nsec};
}

}  // namespace

std::optional<FileStamp> stamp_of(const std::string& path) {
    struct stat s = {};
    return lstat(path.c_str(), &s) == 0 ? regular_file(s) : std::nullopt;
}

std::optional<FileStamp> stamp_through_links(const std::string& path) {
    struct stat s = {};
    return stat(path.c_str(), &s) == 0 ? regular_file(s) : std::nullopt;
}

}  // namespace quill::files
