// Opening an archive: directory, recovery, names, paths. No path may lead out of the directory.

#include "archive/container/archive.h"
#include "archive/names/member_paths.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto archive = quill::zip::Archive::parse({reinterpret_cast<const char*>(data), size});
    if (!archive) return 0;
    const quill::zip::MemberPaths paths(archive->members());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::string path = "/" + paths[i].path + "/";
        if (path.find("/../") != std::string::npos || path.find("//") != std::string::npos) std::abort();
    }
    return 0;
}
