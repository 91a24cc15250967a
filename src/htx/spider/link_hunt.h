#pragma once

#include "htx/spider/site_files.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::htx {

enum class FileKind : std::uint8_t {
    page,   ///< names end in htm or tml
    style,  ///< .css: refers to further files
    other
};

/// Returns the kind indicated by a file's name, ignoring case.
FileKind kind_of(std::string_view name);

/// Returns the files below the root that the page or style sheet `file` refers to, in its order, without duplicates;
/// none if it can't be read.
std::vector<std::string> files_named_in(SiteFiles& site, const std::string& file);

enum class HuntEnd : std::uint8_t { complete, stopped, too_many };

/// The result of a hunt.
struct Hunt {
    std::vector<std::string> files;  ///< from the root: first the start pages, then by distance
    HuntEnd end = HuntEnd::complete;
};

constexpr std::size_t most_hunted_files = 10'000;

/// Is called after each page with the number of files found; returns false to stop.
using HuntWatch = std::function<bool(std::size_t found)>;

/// Collects the pages `start` (paths from the root) and everything that they lead to, breadth first, without
/// duplicates, none outside the root, up to `most_files`.
Hunt hunt_links(SiteFiles& site, const std::vector<std::string>& start, const HuntWatch& watch = {},
                std::size_t most_files = most_hunted_files);

}  // namespace quill::htx
