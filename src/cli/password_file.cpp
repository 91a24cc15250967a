#include "cli/password_file.h"

#include "files/directory.h"

namespace quill::cli {

Result<std::string> read_password(const std::string& path) {
    if (path.empty()) return std::string();
    Result<std::string> text = files::read_file(path);
    if (!text) return text;
    std::string password = text->substr(0, text->find_first_of("\r\n"));
    if (password.empty()) return Error{ErrorCode::bad_input, 0, "its first line is empty, which is not a password"};
    return password;
}

}  // namespace quill::cli
