#pragma once

#include "zip/archive_window.h"

/// What other programs do to the archive while it is open.
namespace quill::zip {

/// Returns true where the archive is still what the rows show. Else asks whether to read it again or to go on with the
/// archive as it was, under a new name.
bool archive_is_ours(arcview& w);

/// Does the same, once for each change.
void notice_foreign_change(arcview& w);

/// Returns the CRC-32 of the bytes of the archive at `path`; nullopt where they are too many to be read on the side, or
/// its stamp is no longer `stamp`.
std::optional<std::uint32_t> crc_of_archive(const std::string& path, const std::optional<files::FileStamp>& stamp);

}  // namespace quill::zip
