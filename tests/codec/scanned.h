#pragma once

#include "codec/decode.h"
#include "codec/part_join.h"
#include "codec/scanner.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quill::tests {

/// A file that a text holds, decoded.
struct ScannedFile {
    codec::Attachment attachment;
    std::string bytes;
    codec::Outcome outcome;

    bool has_problem(std::string_view kind) const {
        for (const codec::Problem& problem : outcome.problems) {
            if (problem.kind == kind) return true;
        }
        return false;
    }
};

/// Scans and decodes a text in memory.
inline std::vector<ScannedFile> scan_and_decode(std::string_view text) {
    codec::LineCursor cursor({{text, {0, text.size(), 0}}});
    const std::array inputs = {text};
    const std::array paths = {std::string("text")};
    std::vector<ScannedFile> out;
    for (codec::FoundFile& file : codec::join_parts(codec::scan(cursor).files, inputs, paths).files) {
        ScannedFile scanned;
        scanned.outcome = codec::decode(file.attachment, inputs, [&](std::string_view bytes) {
            scanned.bytes += bytes;
            return true;
        });
        scanned.attachment = std::move(file.attachment);
        out.push_back(std::move(scanned));
    }
    return out;
}

}  // namespace quill::tests
