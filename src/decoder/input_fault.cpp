#include "decoder/input_fault.h"

#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"

namespace quill::decoder {

std::string input_fault(const std::string& path) {
    const std::string name = files::name_of(path);
    if (files::is_directory(path)) return name + " is a folder. Choose one of the files in it.";
    if (files::is_special(path)) return name + " is a device or a pipe. Only files can be decoded.";
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (file && !file->bytes().empty()) return {};
    if (file) return name + " is empty. Save the message again, or have it sent again.";
    switch (file.error().code) {
        case ErrorCode::not_found:
            return name + " is not in " + files::dir_of(path) +
                   " any more. It may have been moved, renamed or deleted: choose it again.";
        case ErrorCode::access:
            return name + " may not be read by you (" + file.error().text +
                   "). Change the permissions of the file, or ask its owner for a copy.";
        default:
            return name + " could not be read: " + file.error().text + ".";
    }
}

}  // namespace quill::decoder
