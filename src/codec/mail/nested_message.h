#pragma once

#include "codec/recovery/found_file.h"
#include "files/mapped_file.h"

#include <cstdint>
#include <string_view>

namespace quill::codec {

/// Whether a body of this type is a message as a whole: a header, and what follows.
bool is_message_type(std::string_view content_type);

/// Whether it is a message that is itself Base64 or quoted-printable, which RFC 2045 6.4 forbids and which is common.
bool is_encoded_message(const Attachment& attachment);

/// Finds what lies in the encoded messages among `found`, which is what a scan of `input`, input number `source`,
/// found, and puts it behind each of them. To that end `input` becomes a temporary copy of itself without a name, with
/// the decoded messages behind it, in whose bytes their files' ranges lie. Where no copy can be made, or the input is
/// larger than `largest_copied`, all stays as it is and a problem says so. Messages in messages are followed
/// `deepest_encoded` levels deep.
void open_encoded_messages(Found& found, files::MappedFile& input, std::uint32_t source, Texts texts);

constexpr std::uint64_t largest_copied = std::uint64_t{256} << 20U;
constexpr unsigned deepest_encoded = 4;

}  // namespace quill::codec
