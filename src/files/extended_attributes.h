#pragma once

#include <string>

namespace quill::files {

/// Gives the file open at `to` the extended attributes of the file at `from`, as far as the system allows. Those of the
/// system itself, such as lists of who may use it, only `with_access`.
void copy_extended_attributes(const std::string& from, int to, bool with_access);

}  // namespace quill::files
