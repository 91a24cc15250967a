#include "controls/control.h"

#include "files/directory.h"

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
    assign(files ? std::move(*files) : std::vector<std::string>());
}

}  // namespace quill::controls
