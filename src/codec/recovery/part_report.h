#pragma once

#include "codec/attachment.h"
#include "codec/recovery/found_file.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// What is reported of the parts that a file is joined from.
namespace quill::codec {

constexpr std::size_t most_missing_reported = 20;  ///< of the missing parts of one file

/// A place in the inputs.
struct Place {
    std::uint64_t offset = 0;
    std::optional<std::uint32_t> source = {};
};

Place begin_of(const FoundFile& file);
Place end_of(const FoundFile& file);

void report(Attachment& attachment, ProblemKind kind, const Place& at, std::string text = {});

/// Reports that part `number` is missing, unless too many are; `total` is 0 if not stated.
void add_missing(Attachment& attachment, std::uint32_t number, std::uint32_t total, const Place& at);

/// Adds the inputs of `copies` to those with copies of the attachment's parts.
void note_copies(Attachment& attachment, std::span<const std::size_t> copies, std::span<const FoundFile> files);

}  // namespace quill::codec
