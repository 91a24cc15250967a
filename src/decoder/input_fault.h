#pragma once

#include <string>

namespace quill::decoder {

/// Returns why the file at `path` cannot be an input at all, and what to do, in sentences for people: it does not
/// exist, is a folder or a device, may not be read, or is empty. Returns an empty text for a file with bytes to read.
std::string input_fault(const std::string& path);

}  // namespace quill::decoder
