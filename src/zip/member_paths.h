#pragma once

#include "zip/archive.h"

#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Where a member goes below the directory that it is extracted into.
struct MemberPath {
    std::string path;      ///< relative, parts between slashes, each a safe name; never empty; no slash at its end
    bool renamed = false;  ///< differs from the name in the archive by more than a slash at the end
};

/// A path for each member of an archive. None climbs, is absolute or leads through another member's file; no two are
/// equal, nor differ only in the case of A to Z: the later of such members gets a number (`a (2).txt`).
std::vector<MemberPath> member_paths(const std::vector<Member>& members);

/// The safe relative path of one member's name; empty where nothing of it is left.
std::string safe_path(std::string_view name);

}  // namespace quill::zip
