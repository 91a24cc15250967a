#include "qpunwrap/announce.h"

#include "text/count.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <spawn.h>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace quill::qpunwrap {
namespace {

constexpr auto title = "Quoted-printable";

/// Programs that show a text unchanged, with the text as their last argument.
using Words = std::vector<std::string>;
const std::array<Words, 4>& message_boxes() {
    static const std::array<Words, 4> boxes = {
        Words{"zenity", "--info", "--no-markup", "--title", title, "--text"},
        Words{"kdialog", "--title", title, "--msgbox"},
        Words{"xmessage", "-center", "-title", title, "--"},
        Words{"notify-send", "--", title},
    };
    return boxes;
}

bool is_watched() {
    constexpr std::array streams = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
    return std::any_of(streams.begin(), streams.end(), [](int stream) { return tcgetpgrp(stream) == getpgrp(); });
}

bool is_set(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

std::vector<std::string_view> lines_of(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

/// Returns the line in UTF-8, cut if it is longer than anybody reads.
std::string shown(std::string_view line) {
    constexpr std::size_t longest = 1000;  // bytes: three names of files and some words
    std::string utf8 = text::to_utf8(line);
    if (utf8.size() <= longest) return utf8;
    std::size_t end = longest;
    while ((static_cast<unsigned char>(utf8[end]) & 0xC0U) == 0x80U) --end;  // never within a character
    return utf8.substr(0, end) + "...";
}

bool start(Words words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    return posix_spawnp(&child, arguments.front(), nullptr, nullptr, arguments.data(), environ) == 0;
}

}  // namespace

std::string box_text(const std::string& text) {
    constexpr std::size_t first_lines = 20;
    constexpr std::size_t last_lines = 10;
    const std::vector<std::string_view> lines = lines_of(text);
    const std::size_t left_out = lines.size() > first_lines + last_lines ? lines.size() - first_lines - last_lines : 0;
    std::string out;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (left_out > 0 && i == first_lines) {
            out += "... (" + text::counted(left_out, "line") + " left out)\n";
            i += left_out;
        }
        out += shown(lines[i]) + "\n";
    }
    return out;
}

void announce(const std::string& text) {
    if (is_watched() || !(is_set("DISPLAY") || is_set("WAYLAND_DISPLAY"))) return;
    for (Words words : message_boxes()) {
        words.push_back(box_text(text));
        if (start(words)) return;
    }
}

}  // namespace quill::qpunwrap
