#pragma once

#include <string>

namespace quill::files {

/// Gives the file open at `to` the extended attributes of the file at `from`, as far as the system allows. Copies those
/// of the system itself, such as access control lists, only with `with_access`.
void copy_extended_attributes(const std::string& from, int to, bool with_access);

}  // namespace quill::files
