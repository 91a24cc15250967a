#pragma once

#include "files/mapped_file.h"
#include "text/result.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quill::zip {

/// The output of a changed archive until it is complete. Leaves nothing if it is destroyed before it is published.
class ArchiveOutput {
  public:
    virtual ~ArchiveOutput() = default;
    virtual Status write(std::string_view bytes) = 0;
    /// Returns everything written so far, for the check.
    virtual Result<files::MappedFile> read_back() = 0;
    /// Gives it the archive's name, flushed to the disk: in place of the old archive, or, with `is_new`, only if there
    /// is no file of that name.
    virtual Status publish(bool is_new) = 0;
};

/// Begins the output for the archive at a path.
using MakeOutput = std::function<Result<std::unique_ptr<ArchiveOutput>>(const std::string& path)>;

/// Returns a new file beside the archive that gets its name when it is published. It has the old archive's access from
/// its first byte, and its extended attributes.
Result<std::unique_ptr<ArchiveOutput>> output_beside(const std::string& path);

}  // namespace quill::zip
