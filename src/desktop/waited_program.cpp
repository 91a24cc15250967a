#include "desktop/waited_program.h"

#include "desktop/process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace quill::desktop {
namespace {

using platform::ProgramEnd;
using platform::ProgramResult;

constexpr int time_between_questions = 20;  // milliseconds
constexpr int rounds_of_grace = 50;         // between asking a program to end and killing it

/// Becomes the program, in the child, in its own process group. On failure writes into `report`.
[[noreturn]] void become(char* const* argv, int report) {
    setpgid(0, 0);
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
    execv(*argv, argv);
    const char failed = 1;
    const ssize_t written = write(report, &failed, 1);
    _exit(written == 1 ? 126 : 127);
}

/// Calls `call` until no signal interrupts it; returns its result.
template <class Call>
auto again_after_signals(Call&& call) {
    auto answer = call();
    while (answer < 0 && errno == EINTR) answer = call();
    return answer;
}

/// A process to wait for. Its group does not survive this object.
class Child {
  public:
    explicit Child(pid_t process) : process_(process) { setpgid(process, process); }
    ~Child() {
        if (!ended_) end();
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Waits for a moment. Returns true once the process has ended.
    bool has_ended() {
        poll(nullptr, 0, time_between_questions);
        wait(WNOHANG);
        return ended_;
    }

    /// Ends the process and its group: first with a request, then by force.
    void end() {
        kill(-process_, SIGTERM);
        for (int round = 0; round < rounds_of_grace && !has_ended(); ++round) continue;
        kill(-process_, SIGKILL);
        wait(0);
    }

    ProgramResult result() const {
        if (!status_) return {ProgramEnd::killed};
        return WIFEXITED(*status_) ? ProgramResult{ProgramEnd::exited, WEXITSTATUS(*status_)}
                                   : ProgramResult{ProgramEnd::killed};
    }

  private:
    void wait(int options) {
        if (ended_) return;
        int status = 0;
        const pid_t answer = again_after_signals([&] { return waitpid(process_, &status, options); });
        ended_ = answer != 0;
        if (answer == process_) status_ = status;
    }

    pid_t process_;
    bool ended_ = false;
    std::optional<int> status_;  ///< absent if the system keeps none: SIGCHLD is ignored
};

}  // namespace

std::string WaitedPrograms::find(const std::string& program) {
    return find_program(program);
}

ProgramResult WaitedPrograms::run(const std::string& path, const std::vector<std::string>& arguments,
                                  const std::function<bool()>& goes_on) {
    const Arguments words(path, arguments);
    std::array<int, 2> report{};
    if (pipe2(report.data(), O_CLOEXEC) != 0) return {};
    const pid_t process = fork();
    if (process == 0) become(words.argv(), report[1]);
    close(report[1]);
    char failed = 0;
    // A successful exec closes the pipe.
    const bool not_started = process < 0 || again_after_signals([&] { return read(report[0], &failed, 1); }) != 0;
    close(report[0]);
    if (process < 0) return {};
    Child child(process);
    if (not_started) {
        child.end();
        return {};
    }
    while (!child.has_ended()) {
        if (goes_on()) continue;
        child.end();
        return {ProgramEnd::stopped};
    }
    return child.result();
}

}  // namespace quill::desktop
