#include "files/directory.h"
#include "files/path.h"
#include "shell/startup.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <sys/stat.h>

namespace quill::shell {
namespace {

constexpr mode_t only_the_user = 0700;

constexpr std::array<std::string_view, 5> fixed_directories = {"program/temp", "system/temp", "zip-htx directory",
                                                               "favorites", "lists"};

/// Makes the directory and its parents.
Status make_directories(const std::string& path) {
    if (path.empty() || files::is_directory(path)) return Done{};
    if (Status above = make_directories(files::dir_of(path)); !above) return above;
    if (mkdir(path.c_str(), only_the_user) == 0) return Done{};
    if (errno == EEXIST && files::is_directory(path)) return Done{};  // another start was quicker
    return system_error(errno);
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

std::string data_directory() {
    const std::string home_of_data = environment("XDG_DATA_HOME");
    if (home_of_data.starts_with('/')) return files::join(home_of_data, "quillbright");
    return files::join(environment("HOME"), ".local/share/quillbright");
}

Status enter_program_directory(const std::string& data) {
    for (const std::string_view name : fixed_directories) {
        if (Status made = make_directories(files::join(data, name)); !made) return made;
    }
    if (!files::change_directory(files::join(data, "program"))) return system_error(errno);
    return Done{};
}

}  // namespace quill::shell
