#include "files/extended_attributes.h"

#include <cerrno>
#include <sys/xattr.h>

namespace quill::files {

void copy_extended_attributes(const std::string& from, int to, bool with_access) {
    const ssize_t size = listxattr(from.c_str(), nullptr, 0);
    if (size <= 0) return;
    std::string names(static_cast<std::size_t>(size), '\0');
    const ssize_t listed = listxattr(from.c_str(), names.data(), names.size());
    if (listed <= 0) return;
    names.resize(static_cast<std::size_t>(listed));
    for (std::size_t at = 0; at < names.size();) {
        const std::string name = names.c_str() + at;
        at += name.size() + 1;
        if (!with_access && name.starts_with("system.")) continue;
        const ssize_t needed = getxattr(from.c_str(), name.c_str(), nullptr, 0);
        if (needed < 0) continue;
        std::string value(static_cast<std::size_t>(needed), '\0');
        const ssize_t read = getxattr(from.c_str(), name.c_str(), value.data(), value.size());
        if (read >= 0) fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(read), 0);
    }
}

Status set_extended_attribute(const std::string& path, const std::string& name, std::string_view value) {
    if (lsetxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0) != 0) return system_error(errno);
    return Done{};
}

}  // namespace quill::files
