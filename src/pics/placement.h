#pragma once

#include "pics/directory.h"
#include "report/problem.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace quill::pics {

/// Where a picture's bytes are.
struct Place {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;  ///< available bytes
    report::Verdict verdict = report::Verdict::whole;
};

/// Returns a place for each picture of the directory. In a damaged album, places pictures from the front and from the
/// end as long as they begin like pictures; between the two, one picture has lost or gained bytes, and others may be
/// lost.
std::vector<Place> place_pictures(std::string_view album, const Directory& directory, Form form);

}  // namespace quill::pics
