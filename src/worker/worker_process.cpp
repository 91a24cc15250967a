#include "worker/worker_process.h"

#include "files/directory.h"
#include "files/path.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace quill::worker {
namespace {

constexpr int most_side = 1 << 17;

/// Names of the faults, in the order of Fault.
constexpr std::array<const char*, 6> reasons = {"",
                                                "the file is not a picture of a known kind",
                                                "the picture is too large",
                                                "the file has fewer pictures",
                                                "the file is damaged",
                                                "the file is cut off"};

/// Returns the pixels in the memory that came with an answer; no bytes if it does not match the answer.
platform::Pixels mapped_pixels(const Answer& answer, const files::Descriptor& memory) {
    const auto width = static_cast<std::uint64_t>(answer.width);
    const auto height = static_cast<std::uint64_t>(answer.height);
    constexpr std::uint64_t most_stride = std::uint64_t{most_side} * 8;
    if (answer.width <= 0 || answer.width > most_side || answer.height <= 0 || answer.height > most_side) return {};
    if (answer.stride < width * 4 || answer.stride > most_stride || answer.stride % 4 != 0) return {};
    const std::uint64_t size = answer.stride * height;
    struct stat status = {};
    constexpr int needed = F_SEAL_SHRINK | F_SEAL_WRITE;
    if (fstat(memory.get(), &status) != 0 || static_cast<std::uint64_t>(status.st_size) < size) return {};
    if (const int seals = fcntl(memory.get(), F_GET_SEALS); seals < 0 || (seals & needed) != needed) return {};
    void* bytes = mmap(nullptr, size, PROT_READ, MAP_SHARED, memory.get(), 0);
    if (bytes == MAP_FAILED) return {};
    const auto unmap = [size](const std::uint8_t* mapped) { munmap(const_cast<std::uint8_t*>(mapped), size); };
    return {{answer.width, answer.height},
            answer.stride,
            std::shared_ptr<const std::uint8_t>(static_cast<const std::uint8_t*>(bytes), unmap)};
}

std::string format_of(const Answer& answer) {
    std::string name(answer.format.data(), strnlen(answer.format.data(), answer.format.size()));
    const auto is_odd = [](char c) { return (c < 'a' || c > 'z') && (c < '0' || c > '9'); };
    return std::any_of(name.begin(), name.end(), is_odd) ? std::string() : name;
}

platform::Picture picture_of(const Answer& answer, const files::Descriptor& memory) {
    platform::Picture picture;
    picture.original = {std::max(answer.original_width, 0), std::max(answer.original_height, 0)};
    picture.count = answer.count;
    picture.animated = answer.animated != 0;
    picture.delay = std::max(answer.delay, 0);
    picture.repeats = std::max(answer.repeats, -1);
    picture.format = format_of(answer);
    picture.reason = reasons[std::min<std::size_t>(static_cast<std::size_t>(answer.fault), reasons.size() - 1)];
    if (memory.is_open()) picture.pixels = mapped_pixels(answer, memory);
    if (picture.pixels.bytes == nullptr) {
        if (picture.reason.empty()) picture.reason = "the decoder failed";
        return picture;
    }
    const bool is_whole = answer.fault == Fault::none;
    picture.state = is_whole ? platform::PictureState::whole : platform::PictureState::partial;
    picture.decoded_percent = is_whole ? 100 : std::min<int>(answer.percent, 99);
    return picture;
}

/// Starts `program` with `line` as its only descriptor besides the standard ones, which are discarded. The environment
/// holds only what the libraries need.
Result<pid_t> spawn(const std::string& program, int line) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_RDWR, 0);
    }
    posix_spawn_file_actions_adddup2(&actions, line, line_descriptor);
    posix_spawn_file_actions_addclosefrom_np(&actions, line_descriptor + 1);
    std::string name = program;
    std::string locale = "LC_ALL=C.UTF-8";
    std::array<char*, 2> arguments = {name.data(), nullptr};
    std::array<char*, 2> environment = {locale.data(), nullptr};
    pid_t process = -1;
    const int failed = posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environment.data());
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) return system_error(failed);
    return process;
}

}  // namespace

std::string find_worker() {
    const std::string here = files::dir_of(files::resolved("/proc/self/exe"));
    // Installed beside the program or in the system's directory for internal programs; in a build, in its own
    // directory.
    for (const char* place : {"quillpicture", "../libexec/quillbright/quillpicture", "../picture/quillpicture"}) {
        if (std::string path = files::join(here, place); files::is_executable(path)) return path;
    }
    return {};
}

Result<WorkerProcess> WorkerProcess::start(const std::string& program) {
    std::array<int, 2> ends = {};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return system_error(errno);
    files::Descriptor own(ends[0]);
    // Above the standard descriptors and the line's own, so that dup2 there always makes a copy without close-on-exec.
    const files::Descriptor its(fcntl(ends[1], F_DUPFD_CLOEXEC, line_descriptor + 1));
    close(ends[1]);
    const Result<pid_t> process = spawn(program, its.get());
    if (!process) return process.error();
    return WorkerProcess(*process, std::move(own));
}

WorkerProcess::WorkerProcess(WorkerProcess&& other) noexcept
    : process_(std::exchange(other.process_, -1)), line_(std::move(other.line_)) {}

WorkerProcess& WorkerProcess::operator=(WorkerProcess&& other) noexcept {
    std::swap(process_, other.process_);
    std::swap(line_, other.line_);
    return *this;
}

WorkerProcess::~WorkerProcess() {
    if (process_ < 0) return;
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool WorkerProcess::send(const Request& request, int file) const {
    return send_message(line(), &request, sizeof request, file);
}

std::variant<WorkerProcess::Nothing, Hello, WorkerProcess::Reply> WorkerProcess::receive() const {
    std::array<char, std::max(sizeof(Hello), sizeof(Answer))> bytes = {};
    pollfd waiting{line(), POLLIN, 0};
    if (poll(&waiting, 1, 0) == 0) return Nothing::yet;
    const Received received = receive_message(line(), bytes.data(), bytes.size());
    const files::Descriptor memory(received.file);
    Hello hello;
    if (received.size == sizeof hello) std::memcpy(&hello, bytes.data(), sizeof hello);
    if (received.size == sizeof hello && hello.magic == Hello::right_magic) return hello;
    Answer answer;
    if (received.size != sizeof answer) return Nothing::any_more;
    std::memcpy(&answer, bytes.data(), sizeof answer);
    return Reply{answer.id, picture_of(answer, memory)};
}

Result<OpenSource> open_source(const platform::PictureSource& source) {
    OpenSource open;
    if (source.bytes != nullptr) {
        open.file = files::Descriptor(memfd_create("picture", MFD_CLOEXEC));
        open.length = source.bytes->size();
        if (!open.file.is_open() || write(open.file.get(), source.bytes->data(), open.length) < 0)
            return system_error(errno);
        return open;
    }
    open.file = files::Descriptor(::open(source.path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (!open.file.is_open() || fstat(open.file.get(), &status) != 0) return system_error(errno);
    if (!S_ISREG(status.st_mode)) return Error{ErrorCode::unsupported, 0, "Not a regular file"};
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (source.offset > size) return Error{ErrorCode::bad_argument, size, "The album ends before the picture"};
    open.offset = source.offset;
    open.length = std::min(source.length, size - source.offset);
    return open;
}

platform::Picture failed_picture(std::string reason) {
    platform::Picture picture;
    picture.reason = std::move(reason);
    return picture;
}

}  // namespace quill::worker
