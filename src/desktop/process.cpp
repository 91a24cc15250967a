#include "desktop/process.h"

#include "files/path.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quill::desktop {
namespace {

bool is_executable(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) && access(path.c_str(), X_OK) == 0;
}

std::string own_directory() {
    std::array<char, 4096> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    return length > 0 ? files::dir_of(std::string_view(path.data(), static_cast<std::size_t>(length))) : std::string();
}

/// Becomes the program, in the grandchild, or writes the reason for the failure into `report`.
[[noreturn]] void become(char* const* argv, const char* directory, int report) {
    if (*directory == '\0' || chdir(directory) == 0) execv(*argv, argv);
    const int reason = errno;
    const ssize_t told = write(report, &reason, sizeof reason);
    _exit(told == sizeof reason ? 126 : 127);
}

}  // namespace

std::string find_program(const std::string& program) {
    if (program.find('/') != std::string::npos) return is_executable(program) ? program : std::string();
    const std::string beside = files::join(own_directory(), program);
    if (is_executable(beside)) return beside;
    const char* search = std::getenv("PATH");
    std::string_view rest = search != nullptr ? search : "/usr/local/bin:/usr/bin:/bin";
    while (!rest.empty()) {
        const std::string_view directory = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(directory.size() + 1, rest.size()));
        const std::string path = files::join(directory, program);
        if (!directory.empty() && is_executable(path)) return path;
    }
    return {};
}

Arguments::Arguments(const std::string& path, const std::vector<std::string>& arguments) : words_{path} {
    words_.insert(words_.end(), arguments.begin(), arguments.end());
    for (std::string& word : words_) argv_.push_back(word.data());
    argv_.push_back(nullptr);
}

bool start_detached(const std::string& path, const std::vector<std::string>& arguments, const std::string& directory) {
    const Arguments words(path, arguments);
    std::array<int, 2> report{};
    if (pipe2(report.data(), O_CLOEXEC) != 0) return false;
    const pid_t child = fork();
    if (child == 0) {  // its own child continues alone
        setsid();
        const pid_t grandchild = fork();
        if (grandchild == 0) become(words.argv(), directory.c_str(), report[1]);
        _exit(grandchild > 0 ? 0 : 1);
    }
    close(report[1]);
    int status = 0;
    int reason = 0;
    const bool forked = child > 0 && waitpid(child, &status, 0) == child && status == 0;
    const bool failed = read(report[0], &reason, sizeof reason) != 0;  // a successful exec closes the pipe
    close(report[0]);
    return forked && !failed;
}

}  // namespace quill::desktop
