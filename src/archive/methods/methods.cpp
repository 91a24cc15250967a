#include "archive/methods/methods.h"

#include <algorithm>
#include <array>

namespace quill::archive {
namespace {

constexpr auto table = std::to_array<Method>({
    {0, "stored", make_stored},
    {1, "shrunk", make_shrunk},
    {2, "reduced", make_reduced},
    {3, "reduced", make_reduced},
    {4, "reduced", make_reduced},
    {5, "reduced", make_reduced},
    {6, "imploded", make_imploded},
    {7, "tokenized"},
    {8, "deflated", make_deflated},
    {9, "deflate64", make_deflate64},
    {10, "imploded (DCL)"},
    {12, "bzip2", make_bzip2},
    {14, "LZMA", make_lzma},
    {16, "CMPSC"},
    {18, "TERSE"},
    {19, "LZ77"},
    {20, "Zstandard (old number)", make_zstandard},
    {93, "Zstandard", make_zstandard},
    {95, "xz", make_xz},
    {97, "WavPack"},
    {98, "PPMd", make_ppmd},
    {99, "AES"},
});

}  // namespace

std::span<const Method> methods() {
    return table;
}

const Method* find_method(std::uint16_t number) {
    const auto found = std::find_if(table.begin(), table.end(), [&](const Method& m) { return m.number == number; });
    return found == table.end() ? nullptr : &*found;
}

}  // namespace quill::archive
