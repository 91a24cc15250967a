#pragma once

#include "zip/archive_window.h"

/// Changes of the open archive by other programs.
namespace quill::zip {

/// Returns true if the archive is still the one that the rows show. Otherwise asks whether to read it again or to
/// continue with the earlier archive under a new name.
bool archive_is_ours(arcview& w);

/// Does the same, once for each change.
void notice_foreign_change(arcview& w);

/// Returns the CRC-32 of the bytes of the archive at `path`; nullopt where they are too many to be read on the side, or
/// its stamp is no longer `stamp`.
std::optional<std::uint32_t> crc_of_archive(const std::string& path, const std::optional<files::FileStamp>& stamp);

}  // namespace quill::zip
