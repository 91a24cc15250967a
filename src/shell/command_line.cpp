#include "shell/command_line.h"

#include "files/directory.h"
#include "text/ascii.h"

#include <string_view>

namespace quill::shell {
namespace {

constexpr std::string_view unpack_apart = "/unp";
constexpr std::string_view choose_file = "/de";

bool is_switch(std::string_view line) {
    return line.starts_with("/un") || line.starts_with("/vi") || line.starts_with("/ue") || line.starts_with("/um") ||
           line == choose_file;
}

/// Returns true if the rest of the line after `argument` is read unchanged.
bool takes_rest_whole(const std::string& argument) {
    constexpr std::size_t switch_length = 3;
    const bool is_one = argument == unpack_apart || (argument.size() == switch_length && is_switch(argument));
    return argument == "&" || (is_one && !names_a_file(argument));
}

std::string absolute_argument(const std::string& argument) {
    if (argument == "?" || takes_rest_whole(argument)) return argument;
    if (argument.starts_with('&') && !names_a_file(argument)) return "&" + files::absolute(argument.substr(1));
    return files::absolute(argument.starts_with("./") ? argument.substr(2) : argument);
}

void drop_outer_quotes(std::string& line) {
    if (line.ends_with('"')) line.pop_back();
    if (line.starts_with('"')) line.erase(0, 1);
}

/// The line behind a switch of `length` characters and the character that follows it.
std::string behind_switch(const std::string& line, std::size_t length = 3) {
    return line.size() <= length + 1 ? std::string() : line.substr(length + 1);
}

}  // namespace

bool names_a_file(const std::string& path) {
    return files::exists(path) && !files::is_directory(path);
}

std::string command_line_of(std::span<const std::string> arguments) {
    std::string line;
    bool taken_whole = false;
    for (const std::string& argument : arguments) {
        if (argument.empty()) continue;
        const std::string absolute = absolute_argument(argument);
        const bool quoted = !taken_whole && !absolute.starts_with('&') && absolute.find(' ') != std::string::npos;
        if (!line.empty()) line += ' ';
        line += quoted ? '"' + absolute + '"' : absolute;
        taken_whole = taken_whole || takes_rest_whole(argument);
    }
    return line;
}

Start parse_command_line(const std::string& line, const std::function<bool(const std::string& path)>& is_file) {
    Start start;
    std::string& rest = start.path;
    const auto has_switch = [&](std::string_view name) { return rest.starts_with(name) && !is_file(rest); };
    rest = line == "?" ? std::string() : line;
    start.no_file = rest.empty();
    drop_outer_quotes(rest);
    if (has_switch("&")) {
        const std::string behind(text::trim(std::string_view(rest).substr(1)));
        if (is_file(behind)) rest = behind;
    }
    start.open_at_once = has_switch("/un");
    start.unpacks_apart = start.open_at_once && (rest == unpack_apart || rest.starts_with("/unp "));
    if (start.open_at_once) rest = behind_switch(rest, start.unpacks_apart ? unpack_apart.size() : 3);
    start.create_htx = has_switch("/um");
    start.create = start.create_htx || has_switch("/ue");
    start.choose = rest == choose_file && !is_file(rest);
    if (start.create || start.choose) return start;
    if (has_switch("/vi")) {
        rest = behind_switch(rest);
        start.view_only = true;
    }
    start.hides_options = rest.empty();
    return start;
}

}  // namespace quill::shell
