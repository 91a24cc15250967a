#include "files/directory.h"

#include "files/mapped_file.h"
#include "files/names.h"
#include "files/path.h"
#include "text/ascii.h"

#include <climits>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace quill::files {
namespace {

bool before_in_listing(const std::string& a, const std::string& b) {
    const auto by_letter = [](char x, char y) {
        return static_cast<unsigned char>(text::lower(x)) < static_cast<unsigned char>(text::lower(y));
    };
    if (std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), by_letter)) return true;
    if (std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(), by_letter)) return false;
    return a < b;
}

/// Returns true if the entry is a directory; asks the file system only if the entry itself does not say.
bool is_directory_entry(int dir_fd, const dirent& entry) {
    if (entry.d_type == DT_DIR) return true;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
    struct stat status = {};
    return fstatat(dir_fd, entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

template <class Accept>
Result<std::vector<std::string>> list(const std::string& dir, Accept accept) {
    const std::unique_ptr<DIR, int (*)(DIR*)> handle(opendir(dir.c_str()), closedir);
    if (!handle) return system_error(errno);
    std::vector<std::string> names;
    while (const dirent* entry = readdir(handle.get())) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        if (accept(name, is_directory_entry(dirfd(handle.get()), *entry))) names.emplace_back(name);
    }
    std::sort(names.begin(), names.end(), before_in_listing);
    return names;
}

}  // namespace

Result<std::vector<std::string>> list_files(const std::string& dir, std::string_view patterns) {
    return list(dir, [&](std::string_view name, bool directory) { return !directory && matches(name, patterns); });
}

Result<std::vector<std::string>> list_directories(const std::string& dir) {
    return list(dir, [](std::string_view, bool directory) { return directory; });
}

std::optional<std::uint64_t> file_size(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

bool exists(const std::string& path) {
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0;
}

bool is_directory(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool is_link(const std::string& path) {
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool is_special(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

bool is_executable(const std::string& path) {
    return file_size(path) && access(path.c_str(), X_OK) == 0;
}

bool is_writable(const std::string& path) {
    return file_size(path) && access(path.c_str(), W_OK) == 0;
}

std::optional<Identity> identity_of(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    return Identity{status.st_dev, status.st_ino};
}

bool same_file(const std::string& a, const std::string& b) {
    const std::optional<Identity> identity = identity_of(a);
    return identity && identity == identity_of(b);
}

bool remove_file(const std::string& path) {
    return unlink(path.c_str()) == 0;
}

Result<std::string> make_new_directory(const std::string& path, unsigned mode) {
    constexpr unsigned most_tries = 10'000;
    for (unsigned n = 1; n < most_tries; ++n) {
        std::string made = join(dir_of(path), numbered_name(name_of(path), n));
        if (mkdir(made.c_str(), mode) == 0) return made;
        if (errno != EEXIST) break;
    }
    return system_error(errno);
}

Status rename_new(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return Done{};
    if (errno != EINVAL && errno != ENOSYS) return system_error(errno);
    // On a file system without exclusive renames a hard link is exclusive as well; one without links (FAT) has neither.
    if (link(from.c_str(), to.c_str()) == 0) {
        unlink(from.c_str());
        return Done{};
    }
    if (errno == EEXIST || exists(to)) return system_error(EEXIST);
    return rename_over(from, to);
}

Status rename_over(const std::string& from, const std::string& to) {
    if (rename(from.c_str(), to.c_str()) == 0) return Done{};
    return system_error(errno);
}

std::string current_directory() {
    char buffer[PATH_MAX];
    return getcwd(buffer, sizeof buffer) == nullptr ? std::string() : std::string(buffer);
}

bool change_directory(const std::string& dir) {
    return chdir(dir.c_str()) == 0;
}

std::string absolute(const std::string& path) {
    return path.starts_with('/') ? path : join(current_directory(), path);
}

std::string resolved(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
    return real ? std::string(real.get()) : path;
}

Result<std::string> read_file(const std::string& path) {
    const Result<MappedFile> file = MappedFile::open(path);
    if (!file) return file.error();
    return std::string(file->bytes());
}

}  // namespace quill::files
