#include "cli/commands.h"
#include "cli/interruption.h"
#include "files/atomic_file.h"

#include <iostream>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

/// Raises the limit of open files: every input stays open while parts of it may be needed, and a mail folder has
/// thousands.
void allow_many_open_files() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace quill::cli;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    allow_many_open_files();
    quill::files::let_oversized_writes_fail();
    std::ios::sync_with_stdio(false);
    const ExitStatus status = run(arguments, {std::cin, std::cout, std::cerr, isatty(STDERR_FILENO) == 1});
    Interruption::end_process_if_caught();
    return static_cast<int>(status);
}
