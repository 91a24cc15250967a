#pragma once

#include "text/result.h"

#include <string>
#include <string_view>

namespace quill::files {

/// Gives the file open at `to` the extended attributes of the file at `from`, as far as the system allows. Copies those
/// of the system itself, such as access control lists, only with `with_access`.
void copy_extended_attributes(const std::string& from, int to, bool with_access);

/// Sets the extended attribute `name` of the file at `path`, not of what a link leads to. Fails with the system's
/// reason, often that the file system has none.
Status set_extended_attribute(const std::string& path, const std::string& name, std::string_view value);

}  // namespace quill::files
