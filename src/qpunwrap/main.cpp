#include "files/atomic_file.h"
#include "qpunwrap/announce.h"
#include "qpunwrap/report.h"
#include "qpunwrap/unwrap.h"

#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view usage =
    "Usage: qpunwrap FILE\n"
    "Decodes the quoted-printable text in FILE, a message or a plain text, into new files beside it.\n"
    "\n"
    "  --help      print this help\n"
    "  --version   print the version\n"
    "\n"
    "Exit status: 0 something was made; 1 FILE holds no quoted-printable text; 2 failure.\n";

}  // namespace

int main(int argc, char** argv) {
    using namespace quill::qpunwrap;
    quill::files::let_oversized_writes_fail();
    std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments == std::vector<std::string>{"--help"}) {
        std::cout << usage;
        return 0;
    }
    if (arguments == std::vector<std::string>{"--version"}) {
        std::cout << "qpunwrap " QUILL_VERSION "\n";
        return 0;
    }
    if (!arguments.empty() && arguments.front() == "--") {
        arguments.erase(arguments.begin());
    } else if (!arguments.empty() && arguments.front().starts_with("-")) {
        arguments.clear();
    }
    if (arguments.size() != 1) {
        std::cerr << usage;
        return static_cast<int>(ExitStatus::failed);
    }
    const Report said = report(arguments.front(), unwrap(arguments.front()));
    (said.status == ExitStatus::failed ? std::cerr : std::cout) << said.text;
    announce(said.text);
    return static_cast<int>(said.status);
}
