#include "files/atomic_file.h"

#include "files/directory.h"
#include "files/extended_attributes.h"
#include "files/names.h"
#include "files/path.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quill::files {
namespace {

constexpr mode_t output_mode = 0644;
constexpr mode_t owner_mode = 0600;
constexpr mode_t all_permissions = 0777;
constexpr mode_t group_permissions = 0070;
constexpr unsigned most_name_attempts = 100'000;
constexpr unsigned tried_one_by_one = 8;

/// Writes all of `bytes` at the offset `at`; a pipe or a device has no offsets and is written in order.
bool write_all(int fd, std::string_view bytes, std::uint64_t at, bool direct) {
    while (!bytes.empty()) {
        const ssize_t n = direct ? ::write(fd, bytes.data(), bytes.size())
                                 : pwrite(fd, bytes.data(), bytes.size(), static_cast<off_t>(at));
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

/// Makes a rename survive a power cut. A failure here loses nothing that the user had.
void flush_directory(const std::string& dir) {
    const int fd = open(dir.empty() ? "." : dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

/// Returns a taken number of the series, at least `taken`, whose successor is free. Probes few of many, as thousands of
/// files may want the same name; taken names further on do no harm.
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

std::string descriptor_path(int fd) {
    return "/proc/self/fd/" + std::to_string(fd);
}

/// Returns true if an unnamed file can get a name later, which requires a path to its descriptor.
bool may_be_named_later() {
    static const bool may = access("/proc/self/fd", X_OK) == 0;
    return may;
}

/// Gives the new file `fd` the owner, group and permission bits of `old`, the file at `path`, never more, and its
/// extended attributes.
bool take_access(int fd, const std::string& path, const struct stat& old) {
    mode_t mode = old.st_mode & all_permissions;
    const bool same_owner = fchown(fd, old.st_uid, old.st_gid) == 0;
    const bool same_group = same_owner || fchown(fd, static_cast<uid_t>(-1), old.st_gid) == 0;
    if (!same_group) mode &= ~group_permissions | (mode << 3U);
    copy_extended_attributes(path, fd, same_group);
    return fchmod(fd, mode) == 0;
}

}  // namespace

Result<AtomicFile> AtomicFile::create(const std::string& path, Access access) {
    AtomicFile file(AT_FDCWD, path);
    if (const Status opened = file.open_new(access); !opened) return opened.error();
    return file;
}

Result<AtomicFile> AtomicFile::create_like(const std::string& path, const MappedFile& model) {
    AtomicFile file(AT_FDCWD, path);
    if (const Status opened = file.open_like(descriptor_path(model.descriptor())); !opened) return opened.error();
    return file;
}

Result<AtomicFile> AtomicFile::create_in(int directory, const std::string& name) {
    AtomicFile file(directory, name);
    if (const Status opened = file.open_new(Access::usual); !opened) return opened.error();
    return file;
}

Result<AtomicFile> AtomicFile::create_output(const std::string& path) {
    AtomicFile file(AT_FDCWD, path);
    struct stat status = {};
    const bool is_there = stat(path.c_str(), &status) == 0;
    if (!is_there && exists(path)) return Error{ErrorCode::exists, 0, "A link that leads nowhere"};
    if (is_there && S_ISDIR(status.st_mode)) return system_error(EISDIR);
    if (is_there && S_ISBLK(status.st_mode)) return Error{ErrorCode::unsupported, 0, "Is a disk"};
    const bool direct = is_there && !S_ISREG(status.st_mode);
    if (is_there && !direct) file.path_ = resolved(path);
    if (const Status opened = direct ? file.open_directly() : file.open_new(Access::of_old); !opened) {
        return opened.error();
    }
    return file;
}

Status AtomicFile::open_new(Access access) {
    struct stat old = {};
    const bool like_old = access == Access::of_old && stat(path_.c_str(), &old) == 0 && S_ISREG(old.st_mode);
    if (like_old) return open_like(path_);
    return open_with(access == Access::of_owner ? owner_mode : output_mode);
}

/// Opens a new file with the access of the file at `model`.
Status AtomicFile::open_like(const std::string& model) {
    struct stat old = {};
    if (stat(model.c_str(), &old) != 0) return system_error(errno);
    if (Status opened = open_with(old.st_mode & owner_mode); !opened) return opened;
    return take_access(fd_.get(), model, old) ? Status(Done{}) : Status(system_error(errno));
}

Status AtomicFile::open_with(unsigned mode) {
    const std::string dir = dir_of(path_);
    if (may_be_named_later()) {
        fd_ = Descriptor(openat(directory_, dir.empty() ? "." : dir.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode));
    }
    return fd_.is_open() ? Status(Done{}) : open_named(mode);
}

Status AtomicFile::open_named(unsigned mode) {
    for (unsigned attempt = 0; attempt < most_name_attempts; ++attempt) {
        const std::string name = reachable(join(dir_of(path_), unfinished_name(attempt)));
        fd_ = Descriptor(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        if (fd_.is_open()) {
            unfinished_ = Unfinished(name);
            return Done{};
        }
        if (errno != EEXIST) break;
    }
    return system_error(errno);
}

Status AtomicFile::open_directly() {
    direct_ = true;
    fd_ = Descriptor(open(path_.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (!fd_.is_open() || fstat(fd_.get(), &status) != 0) return system_error(errno);
    if (S_ISREG(status.st_mode)) return system_error(EEXIST);  // it has just been created
    return Done{};
}

/// Returns `path`, relative to the file's directory, as a path that any call of the system understands.
std::string AtomicFile::reachable(const std::string& path) const {
    return directory_ == AT_FDCWD ? path : join(descriptor_path(directory_), path);
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
    if (direct_ && offset != size_) return fail(ESPIPE);
    if (!write_all(fd_.get(), bytes, offset, direct_)) return fail(errno);
    if (offset + bytes.size() > size_) size_ = offset + bytes.size();
    return true;
}

/// Copies inside the kernel; nullopt if the system can't do that between these files.
std::optional<std::size_t> AtomicFile::copy_within_system(const MappedFile& source, std::uint64_t offset,
                                                          std::size_t size) {
    if (direct_) return std::nullopt;
    auto from = static_cast<off64_t>(offset);
    auto to = static_cast<off64_t>(size_);
    const ssize_t n = copy_file_range(source.descriptor(), &from, fd_.get(), &to, size, 0);
    if (n < 0) return std::nullopt;
    size_ += static_cast<std::size_t>(n);
    return static_cast<std::size_t>(n);
}

Result<std::uint64_t> AtomicFile::copy(const MappedFile& source, std::uint64_t offset, std::uint64_t size,
                                       const std::function<bool(std::uint64_t done)>& watch) {
    constexpr std::uint64_t step_within_system = 16U << 20U;
    constexpr std::uint64_t step_through_memory = 1U << 20U;
    bool within_system = true;
    std::string buffer;
    std::uint64_t done = 0;
    while (done < size) {
        if (watch && !watch(done)) return Error{ErrorCode::cancelled, 0, "Stopped"};
        if (within_system) {
            const auto n = copy_within_system(source, offset + done, std::min(size - done, step_within_system));
            done += n.value_or(0);
            within_system = n.value_or(0) != 0;
            continue;
        }
        buffer.resize(std::min(size - done, step_through_memory));
        const std::size_t n = source.read(offset + done, buffer.data(), buffer.size());
        if (!write(std::string_view(buffer).substr(0, n))) return error_;
        done += n;
        if (n < buffer.size()) break;
    }
    return done;
}

void AtomicFile::take_time(const MappedFile& model) {
    struct stat status = {};
    if (fstat(model.descriptor(), &status) != 0) return;
    const timespec times[] = {status.st_mtim, status.st_mtim};
    futimens(fd_.get(), times);
}

void AtomicFile::set_time(std::time_t time) {
    const timespec times[2] = {{time, 0}, {time, 0}};
    futimens(fd_.get(), times);
}

unsigned AtomicFile::permissions() const {
    struct stat status = {};
    return fstat(fd_.get(), &status) == 0 ? status.st_mode & all_permissions : 0;
}

Result<MappedFile> AtomicFile::read_back() const {
    return MappedFile::open(descriptor_path(fd_.get()));
}

/// Collects failures that the system reports only on flush or close, before the file gets its name.
bool AtomicFile::settle(bool flushed) {
    if (failed_) return false;
    if (flushed && !direct_ && fsync(fd_.get()) != 0) return fail(errno);
    Descriptor second(dup(fd_.get()));
    return second.is_open() && second.close() ? true : fail(errno);
}

/// Gives the file the name `target` if it is free.
Status AtomicFile::name_exclusively(const std::string& target) {
    if (!unfinished_.path().empty()) return rename_new(unfinished_.path(), reachable(target));
    if (linkat(fd_.get(), "", directory_, target.c_str(), AT_EMPTY_PATH) == 0) return Done{};
    if (errno == EEXIST) return system_error(EEXIST);
    const std::string unnamed = descriptor_path(fd_.get());  // the way before Linux 6.10 for all but root
    if (linkat(AT_FDCWD, unnamed.c_str(), directory_, target.c_str(), AT_SYMLINK_FOLLOW) == 0) return Done{};
    return system_error(errno);
}

/// Gives the file the first free name of the numbered_name series, from number `first` to `most`.
Result<std::string> AtomicFile::take_free_name(unsigned first, unsigned most) {
    const std::string dir = dir_of(path_);
    const std::string name = name_of(path_);
    Status named = Done{};
    for (unsigned n = first; n <= most; ++n) {
        const std::string target = join(dir, numbered_name(name, n));
        named = name_exclusively(target);
        if (named) return target;
        if (named.error().code != ErrorCode::exists) break;
        if (n == first + tried_one_by_one - 1) n = last_taken_number(reachable(dir), name, n);
        number_ = n + 1;
    }
    return named.error();
}

Result<std::string> AtomicFile::choose_name(LastNumbers* last_numbers) {
    if (last_numbers == nullptr) return take_free_name(1, most_name_attempts);
    unsigned& last = (*last_numbers)[path_];
    number_ = last + 1;
    Result<std::string> named = take_free_name(number_, most_name_attempts);
    if (named) last = number_;
    return named;
}

Result<std::string> AtomicFile::take_name(OnCollision on_collision, LastNumbers* last_numbers) {
    if (on_collision == OnCollision::choose_name) return choose_name(last_numbers);
    if (on_collision == OnCollision::fail) return take_free_name(1, 1);
    for (unsigned attempt = 0; unfinished_.path().empty(); ++attempt) {
        const std::string name = join(dir_of(path_), unfinished_name(attempt));
        const Status named = name_exclusively(name);
        if (named) unfinished_ = Unfinished(reachable(name));
        if (!named && (named.error().code != ErrorCode::exists || attempt == most_name_attempts)) return named.error();
    }
    if (const Status renamed = rename_over(unfinished_.path(), reachable(path_)); !renamed) return renamed.error();
    return path_;
}

Result<std::string> AtomicFile::publish(OnCollision on_collision, Durability durability, LastNumbers* last_numbers) {
    const bool replaces = on_collision == OnCollision::replace && !direct_ && exists(reachable(path_));
    const bool flushed = replaces || durability == Durability::flushed;
    Result<std::string> named = path_;
    if (settle(flushed) && !direct_) named = take_name(on_collision, last_numbers);
    if (failed_) named = error_;
    if (named) unfinished_.finish();
    unfinished_ = Unfinished();
    fd_ = Descriptor();
    if (named && flushed && !direct_) flush_directory(reachable(dir_of(path_)));
    return named;
}

Status AtomicFile::publish_as_rewrite() {
    const Result<std::string> published = publish(OnCollision::replace, Durability::flushed);
    if (!published) return published.error();
    return Done{};
}

void let_oversized_writes_fail() {
    struct sigaction action = {};
    action.sa_handler = [](int) {};  // unlike SIG_IGN, not inherited
    action.sa_flags = SA_RESTART;
    sigaction(SIGXFSZ, &action, nullptr);
}

Status rewrite_file(const std::string& path, std::string_view bytes) {
    Result<AtomicFile> file = AtomicFile::create(resolved(path), Access::of_old);
    if (!file) return file.error();
    file->write(bytes);
    return file->publish_as_rewrite();
}

}  // namespace quill::files
