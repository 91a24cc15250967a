#include "qpunwrap/announce.h"

#include <array>
#include <cstdlib>
#include <spawn.h>
#include <unistd.h>
#include <vector>

namespace quill::qpunwrap {
namespace {

constexpr auto title = "Quoted-printable";

/// Programs that show a text as it stands, the text as their last argument.
using Words = std::vector<std::string>;
const std::array<Words, 3>& message_boxes() {
    static const std::array<Words, 3> boxes = {
        Words{"zenity", "--info", "--no-markup", "--title", title, "--text"},
        Words{"xmessage", "-center", "-title", title, "--"},
        Words{"notify-send", "--", title},
    };
    return boxes;
}

bool is_watched() {
    return isatty(STDIN_FILENO) == 1 || isatty(STDOUT_FILENO) == 1 || isatty(STDERR_FILENO) == 1;
}

bool start(Words words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    return posix_spawnp(&child, arguments.front(), nullptr, nullptr, arguments.data(), environ) == 0;
}

}  // namespace

void announce(const std::string& text) {
    const bool has_display = std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
    if (is_watched() || !has_display) return;
    for (Words words : message_boxes()) {
        words.push_back(text);
        if (start(words)) return;
    }
}

}  // namespace quill::qpunwrap
