#pragma once

#include "archive/ciphers/encryption.h"
#include "archive/progress.h"
#include "text/result.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quill::zip {

/// A file for a new archive.
struct NewMember {
    std::string name;                                ///< of the member: relative, parts between slashes, UTF-8
    std::string file;                                ///< path of the file; for a text made here, its name in errors
    std::optional<std::string> text = std::nullopt;  ///< the content, in place of the file's
};

/// How the members of a new archive are encrypted.
struct Protection {
    std::string password;  ///< empty for none
    archive::Encryption encryption = archive::Encryption::aes256;
};

/// A member that could not be added: the file's path, and why.
using MemberFailure = std::pair<std::string, Error>;

/// Makes the archive at `path` of all members, in their order, in one step; a later one replaces an earlier one of the
/// same name. Files that can't be read are left out and appended to `failures`. Fails with `exists` where there is a
/// file already, with `cancelled` where `watch` says no, with `not_found` where nothing could be added; there is no
/// archive then.
Status make_archive(const std::string& path, const std::vector<NewMember>& members, const Protection& protection,
                    const Watch& watch, std::vector<MemberFailure>& failures);

}  // namespace quill::zip
