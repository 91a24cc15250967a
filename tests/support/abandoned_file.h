#pragma once

#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quill::tests {

/// Returns the number of a process that has ended.
inline pid_t ended_process() {
    const pid_t child = fork();
    if (child == 0) _exit(0);
    waitpid(child, nullptr, 0);
    return child;
}

/// Sets the modification time of the file at `path` to `hours` ago. Returns false on failure.
inline bool make_old(const std::string& path, int hours) {
    const timespec at{std::time(nullptr) - std::time_t{hours} * 3600, 0};
    const timespec times[2] = {at, at};
    return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

/// Writes the file that a run killed two days ago would leave in `directory`, and returns its name.
template <class Directory>
std::string write_abandoned(const Directory& directory) {
    const std::string name = ".quill-" + std::to_string(ended_process()) + "-0.part";
    make_old(directory.write(name, "half"), 48);
    return name;
}

}  // namespace quill::tests
