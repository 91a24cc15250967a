#pragma once

#include "zip/archive_window.h"

/// How files are encrypted that are added to the open archive.
namespace quill::zip {

/// Whether members are encrypted: what is added to such an archive is encrypted in the same way.
bool has_encrypted_members(const arcview& w);

/// Asks how files are to be encrypted that are added from now on, and for their password, twice.
/// REQUIRES: no member is encrypted.
void choose_encryption(arcview& w);

}  // namespace quill::zip
