#pragma once

#include "zip/archive_window.h"

/// The encryption of files added to the open archive.
namespace quill::zip {

/// Returns true if members are encrypted: additions to such an archive are encrypted in the same way.
bool has_encrypted_members(const arcview& w);

/// Asks for the encryption of files added from now on, and for their password, twice. REQUIRES: no member is encrypted.
void choose_encryption(arcview& w);

}  // namespace quill::zip
