#include "controls/control.h"

#include "files/directory.h"
#include "files/path.h"

namespace quill::controls {

void FileListBox::set_directory(std::string directory) {
    directory_ = std::move(directory);
    refresh();
}

void FileListBox::set_pattern(std::string pattern) {
    pattern_ = std::move(pattern);
    refresh();
}

void FileListBox::refresh() {
    Result<std::vector<std::string>> files = files::list_files(directory_, pattern_);
    std::vector<std::string> names = files ? std::move(*files) : std::vector<std::string>();
    if (!shows_hidden) std::erase_if(names, [](const std::string& name) { return name.starts_with('.'); });
    if (executables_only) {
        std::erase_if(names,
                      [&](const std::string& name) { return !files::is_executable(files::join(directory_, name)); });
    }
    assign(std::move(names));
}

}  // namespace quill::controls
