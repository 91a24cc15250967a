#include "cli/file_names.h"

#include "files/directory.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <iterator>
#include <string_view>

namespace quill::cli {
namespace {

Result<std::string> read_list(const std::string& path, std::istream& standard_input) {
    if (path != "-") return files::read_file(path);
    errno = 0;
    std::string text{std::istreambuf_iterator<char>(standard_input), {}};
    if (standard_input.bad()) return system_error(errno == 0 ? EIO : errno);
    return text;
}

}  // namespace

void add_file_names(CLI::App& command, FileNames& names, const std::string& about) {
    command.add_option("FILE", names.files, about);
    command
        .add_option("--files-from", names.list,
                    "Read the names of more FILEs from this file, - for standard\n"
                    "input: one on each line, or with a NUL after each")
        ->type_name("LIST");
    command.parse_complete_callback([&names] {
        if (names.files.empty() && names.list.empty()) throw CLI::RequiredError("FILE");
    });
}

Result<std::vector<std::string>> all_names(const FileNames& names, std::istream& standard_input) {
    std::vector<std::string> out = names.files;
    if (names.list.empty()) return out;
    const Result<std::string> text = read_list(names.list, standard_input);
    if (!text) return text.error();
    const char separator = text->find('\0') == std::string::npos ? '\n' : '\0';
    std::string_view rest = *text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(separator), rest.size());
        if (end != 0) out.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return out;
}

}  // namespace quill::cli
