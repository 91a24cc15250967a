#pragma once

#include "codec/recovery/decode.h"
#include "codec/recovery/part_join.h"
#include "codec/recovery/part_label.h"
#include "codec/scan/scanner.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quill::tests {

/// A decoded file from a text.
struct ScannedFile {
    codec::Attachment attachment;
    std::string bytes;
    codec::Outcome outcome;

    bool has_problem(std::string_view kind) const {
        for (const codec::Problem& problem : outcome.problems) {
            if (word_of(problem) == kind) return true;
        }
        return false;
    }
};

/// Scans and decodes texts in memory together, under the names `paths`.
inline std::vector<ScannedFile> scan_and_decode(const std::vector<std::string_view>& texts,
                                                const std::vector<std::string>& paths) {
    std::vector<codec::FoundFile> found;
    for (std::uint32_t source = 0; source < texts.size(); ++source) {
        codec::LineCursor cursor({{texts[source], {0, texts[source].size(), source}}});
        const std::uint32_t part_number = codec::part_of_path(paths[source]);
        codec::Found one = codec::scan(cursor, codec::Texts::kept, codec::most_files, part_number);
        std::move(one.files.begin(), one.files.end(), std::back_inserter(found));
    }
    std::vector<ScannedFile> out;
    for (codec::FoundFile& file : codec::join_parts(std::move(found), texts, paths).files) {
        ScannedFile scanned;
        scanned.outcome = codec::decode(file.attachment, texts, [&](std::string_view bytes) {
            scanned.bytes += bytes;
            return true;
        });
        scanned.attachment = std::move(file.attachment);
        out.push_back(std::move(scanned));
    }
    return out;
}

/// Scans and decodes a text in memory.
inline std::vector<ScannedFile> scan_and_decode(std::string_view text) {
    return scan_and_decode({text}, {"text"});
}

}  // namespace quill::tests
