#include "cli/commands.h"
#include "cli/interruption.h"

#include <iostream>
#include <string>
#include <unistd.h>
#include <vector>

int main(int argc, char** argv) {
    using namespace quill::cli;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    std::ios::sync_with_stdio(false);
    const ExitStatus status = run(arguments, {std::cin, std::cout, std::cerr, isatty(STDERR_FILENO) == 1});
    Interruption::end_process_if_caught();
    return static_cast<int>(status);
}
